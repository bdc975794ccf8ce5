#include "platform/posix/shell_commands.h"

#include <sys/wait.h>

#include "platform/posix/child_process.h"

namespace orma {

bool ShellCommands::StartCommand(const Text& command, const Text& argument) {
    // The shell leaves the command behind at once, so there is somebody to wait for, and no child
    // of ours is left over.
    const pid_t child = StartChild(
        "/bin/sh", {"sh", "-c", "eval \"$0\" </dev/null >&2 &", ToUtf8(command), ToUtf8(argument)},
        ChildTies::kOurs);
    int status = 0;
    const bool started = child != 0 && ::waitpid(child, &status, 0) == child && status == 0;
    if (!started) Trace("command \"%s\": not started", ToUtf8(command).c_str());
    return started;
}

}  // namespace orma
