#include "medium.h"

#include <chrono>
#include <filesystem>

#include <gtest/gtest.h>

namespace orma::test {
namespace {

std::filesystem::path FastestFolder() {
    const std::filesystem::path inMemory = "/dev/shm";
    std::error_code ignored;
    return std::filesystem::is_directory(inMemory, ignored)
               ? inMemory
               : std::filesystem::temp_directory_path();
}

}  // namespace

Medium::Medium() : folder_(FastestFolder()) {}

Snapshot Medium::Look() {
    std::vector<Text> names;
    EXPECT_EQ(storage.ListFiles(Path(), names), 0U);
    Snapshot files;
    for (const Text& name : names)
        files[name] = ReadFileBytes(Path(name));
    return files;
}

void Medium::SetBack(const Snapshot& files) {
    using namespace std::chrono;
    constexpr FileTime kMade = sys_days(2009y / January / 5) + hours(9);
    std::vector<Text> names;
    EXPECT_EQ(storage.ListFiles(Path(), names), 0U);
    for (const Text& name : names)
        EXPECT_EQ(storage.Delete(Path(name)), 0U);
    for (const auto& [name, bytes] : files) {
        WriteFileBytes(Path(name), bytes);
        EXPECT_EQ(storage.SetLastWriteTime(Path(name), kMade), 0U);
    }
}

}  // namespace orma::test
