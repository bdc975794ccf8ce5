#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include "platform/storage.h"

namespace orma {

/// A file under examination: read anywhere, with 64-bit arithmetic, without message boxes.
class VerifySource {
  public:
    /// Opens the file; Error() says why it could not be opened.
    VerifySource(Storage& storage, const Text& path);

    /// Empty when the file is open and measured; else the system's reason.
    [[nodiscard]] const std::string& Error() const { return error_; }
    [[nodiscard]] std::uint64_t Size() const { return size_; }

    /// Reads into.size() bytes at `offset`; false when the file does not hold them or fails.
    [[nodiscard]] bool Read(std::uint64_t offset, std::span<std::uint8_t> into);

  private:
    std::unique_ptr<StorageFile> file_;
    std::uint64_t size_ = 0;
    std::string error_;
};

}  // namespace orma
