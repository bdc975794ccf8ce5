#include "platform/posix/shell_commands.h"

#include <array>
#include <csignal>

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orma {

bool ShellCommands::StartCommand(const Text& command, const Text& argument) {
    // The shell leaves the command behind at once, so there is somebody to wait for, and no child
    // of ours is left over.
    std::string script = "eval \"$0\" </dev/null >&2 &";
    std::string shell = "sh";
    std::string option = "-c";
    std::string line = ToUtf8(command);
    std::string parameter = ToUtf8(argument);
    const std::array<char*, 6> arguments = {shell.data(), option.data(),    script.data(),
                                            line.data(),  parameter.data(), nullptr};
    posix_spawnattr_t attributes;
    if (::posix_spawnattr_init(&attributes) != 0) return false;
    sigset_t none;  // signals that a watch of ours has blocked would stay blocked
    sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setflags(&attributes, POSIX_SPAWN_SETSIGMASK);
    pid_t child = 0;
    const int error =
        ::posix_spawn(&child, "/bin/sh", nullptr, &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    int status = 0;
    const bool ended = error == 0 && ::waitpid(child, &status, 0) == child;
    if (!ended || status != 0) Trace("command \"%s\": not started", line.c_str());
    return ended && status == 0;
}

}  // namespace orma
