#include "platform/posix/medium_sync.h"

#include <cerrno>

#include <fcntl.h>
#include <unistd.h>

namespace orma {

int SyncFile(int descriptor) {
    if (::fdatasync(descriptor) == 0) return 0;
    return errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP ? 0 : errno;
}

void SyncFolder(const std::string& folder) {
    const int descriptor = ::open(folder.empty() ? "." : folder.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) return;
    (void)SyncFile(descriptor);
    ::close(descriptor);
}

}  // namespace orma
