#pragma once

#include <filesystem>
#include <string>

#include "base/bytes.h"
#include "base/text.h"

namespace orma::test {

/// A fresh folder that is removed with everything in it.
class TempFolder {
  public:
    TempFolder();

    /// In the folder `parent`, for tests that need a medium of another kind.
    explicit TempFolder(const std::filesystem::path& parent);
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// The folder with its separator at the end, or the path of a file in it.
    [[nodiscard]] Text Path(TextView name = {}) const;
    [[nodiscard]] std::filesystem::path Native(TextView name = {}) const;

  private:
    std::filesystem::path path_;
};

/// A file's bytes; a test failure and nothing when it cannot be read.
[[nodiscard]] Bytes ReadFileBytes(const Text& path);

/// Creates or replaces a file.
void WriteFileBytes(const Text& path, ByteSpan bytes);

}  // namespace orma::test
