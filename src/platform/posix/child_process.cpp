#include "platform/posix/child_process.h"

#include <csignal>

#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

namespace orma {

pid_t StartChild(const char* program, std::vector<std::string> words, ChildTies ties) {
    std::vector<char*> arguments;
    arguments.reserve(words.size() + 1);
    for (std::string& word : words)
        arguments.push_back(word.data());
    arguments.push_back(nullptr);

    posix_spawn_file_actions_t files;
    posix_spawnattr_t attributes;
    ::posix_spawn_file_actions_init(&files);
    ::posix_spawnattr_init(&attributes);
    int flags = POSIX_SPAWN_SETSIGMASK;
    if (ties == ChildTies::kApart) {
        flags |= POSIX_SPAWN_SETSID;
        for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
            ::posix_spawn_file_actions_addopen(&files, stream, "/dev/null", O_RDWR, 0);
    }
    sigset_t none;
    sigemptyset(&none);
    ::posix_spawnattr_setsigmask(&attributes, &none);
    ::posix_spawnattr_setflags(&attributes, static_cast<short>(flags));
    pid_t child = 0;
    const int failure =
        ::posix_spawnp(&child, program, &files, &attributes, arguments.data(), environ);
    ::posix_spawnattr_destroy(&attributes);
    ::posix_spawn_file_actions_destroy(&files);
    return failure == 0 ? child : 0;
}

}  // namespace orma
