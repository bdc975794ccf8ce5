#include "support/temp_folder.h"

#include <cstdlib>
#include <fstream>

#include <gtest/gtest.h>

namespace orma::test {

TempFolder::TempFolder() : TempFolder(std::filesystem::temp_directory_path()) {}

TempFolder::TempFolder(const std::filesystem::path& parent) {
    std::string pattern = (parent / "orma-test-XXXXXX").string();
    path_ = ::mkdtemp(pattern.data());
}

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::filesystem::path TempFolder::Native(TextView name) const {
    return path_ / ToUtf8(name);
}

Text TempFolder::Path(TextView name) const {
    return FromUtf8(path_.string()) + u"/" + Text(name);
}

Bytes ReadFileBytes(const Text& path) {
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

void WriteFileBytes(const Text& path, ByteSpan bytes) {
    std::ofstream file(ToUtf8(path), std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()),
               static_cast<std::streamsize>(bytes.size()));
    if (!file) ADD_FAILURE() << "cannot write " << ToUtf8(path);
}

}  // namespace orma::test
