#include "platform/posix/console.h"

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

void CreateFilesForOwnerOnly() {
    (void)::umask(S_IRWXG | S_IRWXO);
}

}  // namespace orma
