// orma-setup: the window in which Orma Edit is set up.

#include <QCommandLineParser>
#include <QFile>

#include "machine/machine.h"
#include "platform/posix/console.h"
#include "platform/qt/desktop_program.h"
#include "platform/qt/local_instance.h"
#include "platform/qt/qt_event_loop.h"
#include "platform/qt/qt_message_boxes.h"
#include "window/dialogs/dialog_look.h"
#include "window/dialogs/qt_text.h"
#include "window/setup/setup_window.h"

namespace {

using namespace orma;

constexpr int kUsage = 2;

MachineOptions Parse(const QCoreApplication& application) {
    const QCommandLineOption home("home", "Program folder with the settings.", "folder");
    QCommandLineParser parser;
    parser.setApplicationDescription("Sets up Orma Edit: formats, accounts, options.");
    parser.addOption(home);
    parser.addHelpOption();
    parser.addVersionOption();
    parser.process(application);
    MachineOptions options;
    options.home = QFile::encodeName(parser.value(home)).toStdString();
    return options;
}

QStringList Names(const std::vector<WaveDeviceInfo>& devices) {
    QStringList names;
    for (const WaveDeviceInfo& device : devices)
        names.append(ToQt(device.name));
    return names;
}

int Run(const MachineOptions& options) {
    InstallDialogLook();
    // Accounts hold passwords: what is written here is for its owner alone.
    CreateFilesForOwnerOnly();
    QtEventLoop loop;
    SetupWindow* open = nullptr;
    const QtSignalWatch ended([&] {
        if (open == nullptr || open->EndOnRequest()) QCoreApplication::exit(0);
    });
    QtMessageBoxes boxes;
    Machine machine(loop, boxes);
    if (std::string error; !machine.Open(options, error)) {
        std::fprintf(stderr, "orma-setup: %s\n", error.c_str());
        return kUsage;
    }
    LocalInstance running(machine.ProgramFolder(), LocalInstance::Program::kSetup);
    const auto raise = [&] {
        if (open != nullptr) open->Raise();
    };
    const auto close = [&] {
        if (open != nullptr) open->CloseOnRequest();
    };
    if (!running.Open({.raise = raise, .close = close})) {
        running.Raise();
        return 0;
    }
    LocalInstance editor(machine.ProgramFolder());
    const Ports ports = machine.MakePorts();
    ErrorReporter report(boxes, ports.storage);
    SetupWindow window({.files = {ports.storage, report},
                        .network = *ports.network,
                        .programFolder = machine.ProgramFolder(),
                        .devices = {.inputs = [&] { return Names(machine.Waves().Inputs()); },
                                    .outputs = [&] { return Names(machine.Waves().Outputs()); },
                                    .equalizerSets = {}},
                        .isEditorOpen = [&] { return editor.IsOpen(); }});
    open = &window;
    window.show();
    const int code = QApplication::exec();
    open = nullptr;
    return code;
}

}  // namespace

int main(int count, char** values) {
    return RunDesktopProgram({"orma-setup", ORMA_VERSION}, count, values, Parse, Run);
}
