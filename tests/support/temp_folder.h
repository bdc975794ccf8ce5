#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#include <gtest/gtest.h>

#include "base/bytes.h"
#include "base/text.h"

namespace orma::test {

/// A fresh folder that is removed with everything in it.
class TempFolder {
  public:
    /// In the folder `parent`, for tests that need a medium of another kind.
    explicit TempFolder(
        const std::filesystem::path& parent = std::filesystem::temp_directory_path()) {
        std::string pattern = (parent / "orma-test-XXXXXX").string();
        path_ = ::mkdtemp(pattern.data());
    }
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    /// The folder with its separator at the end, or the path of a file in it.
    [[nodiscard]] Text Path(TextView name = {}) const {
        return FromUtf8(path_.string()) + u"/" + Text(name);
    }
    [[nodiscard]] std::filesystem::path Native(TextView name = {}) const {
        return path_ / ToUtf8(name);
    }

  private:
    std::filesystem::path path_;
};

/// A file's bytes; a test failure and nothing when it cannot be read.
[[nodiscard]] inline Bytes ReadFileBytes(const Text& path) {
    std::ifstream file(ToUtf8(path), std::ios::binary | std::ios::ate);
    if (!file) {
        ADD_FAILURE() << "cannot read " << ToUtf8(path);
        return {};
    }
    Bytes bytes(static_cast<std::size_t>(file.tellg()));
    file.seekg(0);
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return bytes;
}

/// Creates or replaces a file.
inline void WriteFileBytes(const Text& path, ByteSpan bytes) {
    std::ofstream file(ToUtf8(path), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file) ADD_FAILURE() << "cannot write " << ToUtf8(path);
}

}  // namespace orma::test
