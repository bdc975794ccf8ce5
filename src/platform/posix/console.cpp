#include "platform/posix/console.h"

#include <poll.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orma {

bool OutputIsTerminal() {
    return ::isatty(STDOUT_FILENO) == 1;
}

bool ErrorsAreTerminal() {
    return ::isatty(STDERR_FILENO) == 1;
}

bool InputIsTerminal() {
    return ::isatty(STDIN_FILENO) == 1;
}

std::string ReadAnswer() {
    constexpr int kLookEveryMs = 50;
    std::string line;
    for (;;) {
        sigset_t pending;
        if (sigpending(&pending) == 0 && sigismember(&pending, SIGINT) == 1) return {};
        pollfd input{STDIN_FILENO, POLLIN, 0};
        if (::poll(&input, 1, kLookEveryMs) <= 0) continue;
        char character = 0;
        if (::read(STDIN_FILENO, &character, 1) != 1 || character == '\n') return line;
        line += character;
    }
}

void CreateFilesForOwnerOnly() {
    (void)::umask(S_IRWXG | S_IRWXO);
}

}  // namespace orma
