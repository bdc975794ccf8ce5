// orma-edit: the window of Orma Edit.

#include <QCommandLineParser>
#include <QFile>

#include "platform/qt/desktop_program.h"
#include "platform/qt/local_instance.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_message_boxes.h"
#include "window/accessible_page.h"
#include "window/dialogs/dialog_look.h"
#include "window/window_session.h"

namespace {

using namespace orma;

constexpr int kFailed = 1;
constexpr int kUsage = 2;

struct Arguments {
    MachineOptions machine;
    Text screenshot;  // absolute path; empty: none
    Text path;        // the same, of a project or recording
};

Arguments Parse(const QCoreApplication& application) {
    const QCommandLineOption home("home", "Program folder with the settings.", "folder");
    const QCommandLineOption audio(
        "audio", "portaudio, or virtual:[in=FILE][,out=FILE][,pace=real|fast|SPEED].", "system",
        kDefaultAudio);
    const QCommandLineOption hardware("hardware",
                                      "Recorder and S/PDIF card: alsa[:card=PCM[,rate=HZ]], none, "
                                      "or simulated:[recorder=FILE][,card=FILE].",
                                      "system", "alsa");
    const QCommandLineOption trace("trace", "Append diagnostic lines to a file.", "file");
    const QCommandLineOption screenshot("screenshot", "Save the window as a picture, then end.",
                                        "file");
    QCommandLineParser parser;
    parser.setApplicationDescription("Records speech into projects and edits it.");
    parser.addOptions({home, audio, hardware, trace, screenshot});
    parser.addHelpOption();
    parser.addVersionOption();
    parser.addPositionalArgument("file", "A project or recording to open.", "[file]");
    parser.process(application);

    const auto native = [](const QString& value) { return QFile::encodeName(value).toStdString(); };
    const auto option = [&](const QCommandLineOption& one) { return native(parser.value(one)); };
    Arguments arguments{.machine = {option(home), option(audio), option(hardware), option(trace)},
                        .screenshot = {},
                        .path = {}};
    if (const std::string file = option(screenshot); !file.empty())
        arguments.screenshot = CallerPath(file);
    if (!parser.positionalArguments().isEmpty())
        arguments.path = CallerPath(native(parser.positionalArguments().front()));
    return arguments;
}

int Run(const Arguments& arguments) {
    QApplication::setQuitOnLastWindowClosed(false);
    InstallAccessiblePage();
    InstallDialogLook();
    QtEventLoop loop;
    // The end of the desktop's session ends a take as closing the window does, and cancels a job.
    WindowSession* open = nullptr;
    QtSignalWatch ended([&] {
        if (open != nullptr) open->Close();
    });
    QtMessageBoxes boxes;
    Machine machine(loop, boxes);
    if (std::string error; !machine.Open(arguments.machine, error)) {
        std::fprintf(stderr, "orma-edit: %s\n", error.c_str());
        return kUsage;
    }
    LocalInstance running(machine.ProgramFolder());
    WindowSession session(machine, running);
    session.DuringJobs([&ended] { ended.Poll(); });
    if (!session.Start(arguments.path)) return 0;
    open = &session;
    bool saved = true;
    if (!arguments.screenshot.empty()) {
        // Behind the first frame.
        loop.Post([&] {
            saved = session.Save(arguments.screenshot);
            loop.Quit(0);
        });
    }
    const int code = loop.Run();
    open = nullptr;
    const bool kept = session.End();
    return saved && kept ? code : kFailed;
}

}  // namespace

int main(int count, char** values) {
    return RunDesktopProgram({"orma-edit", ORMA_VERSION}, count, values, Parse, Run);
}
