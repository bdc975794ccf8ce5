#pragma once

#include "platform/posix/background_sync.h"
#include "platform/storage.h"

namespace orma {

/// Files through POSIX system calls. Paths are UTF-8 on the system's side. A file open for writing
/// is locked against a second writer. The storage outlives its files.
class PosixStorage : public Storage {
  public:
    [[nodiscard]] SystemError Open(const Text& path, const OpenMode& mode,
                                   std::unique_ptr<StorageFile>& file) override;
    [[nodiscard]] SystemError Map(const Text& path, std::size_t bytes,
                                  std::unique_ptr<MappedFile>& file) override;
    [[nodiscard]] bool Exists(const Text& path) override;
    [[nodiscard]] SystemError Delete(const Text& path) override;
    [[nodiscard]] SystemError Rename(const Text& from, const Text& to) override;
    [[nodiscard]] SystemError LastWriteTime(const Text& path, FileTime& time) override;
    [[nodiscard]] SystemError SetLastWriteTime(const Text& path, FileTime time) override;
    [[nodiscard]] SystemError FreeBytes(const Text& folder, std::uint64_t& bytes) override;
    [[nodiscard]] SystemError CreateFolder(const Text& path) override;
    [[nodiscard]] SystemError ListFiles(const Text& folder, std::vector<Text>& names) override;
    [[nodiscard]] Text ErrorText(SystemError error) override;

  private:
    [[nodiscard]] SystemError OpenOnce(const Text& path, const OpenMode& mode,
                                       std::unique_ptr<StorageFile>& file);

    BackgroundSync sync_;
};

}  // namespace orma
