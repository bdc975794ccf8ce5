#pragma once

#include <QApplication>
#include <cstdio>

#include "platform/qt/display.h"
#include "platform/qt/qt_signal_watch.h"

namespace orma {

/// How a program calls itself: on the command line, to the desktop, in its version.
struct ProgramName {
    const char* name;
    const char* version;
};

/// What main() does in a program with windows, until its end: `parse` reads the arguments of a
/// QCoreApplication, and `run` gets what it returned, under a QApplication; the answer is that of
/// `run`. Signals wait for a QtSignalWatch. Where there is no display the arguments are parsed all
/// the same, for the help that they may ask for, and the answer is 1, with words on standard error.
template <typename Parse, typename Run>
[[nodiscard]] int RunDesktopProgram(const ProgramName& program, int count, char** values,
                                    Parse parse, Run run) {
    QtSignalWatch::Block();
    QCoreApplication::setApplicationName(program.name);
    QCoreApplication::setApplicationVersion(program.version);
    if (!HasDisplay(count, values)) {
        const QCoreApplication bare(count, values);
        (void)parse(bare);
        std::fprintf(stderr, "%s: there is no display\n", program.name);
        return 1;
    }
    const QApplication application(count, values);
    QGuiApplication::setDesktopFileName(program.name);
    return run(parse(application));
}

}  // namespace orma
