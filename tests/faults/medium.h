#pragma once

#include <chrono>
#include <filesystem>
#include <map>

#include <gtest/gtest.h>

#include "platform/posix/posix_storage.h"
#include "support/temp_folder.h"

namespace orma::test {

/// The files of a folder, by name.
using Snapshot = std::map<Text, Bytes>;

/// The medium of a run: a folder that can be looked at whole and set back. It lies in memory where
/// the system has such a place, because every run flushes dozens of files.
class Medium {
  public:
    [[nodiscard]] Text Path(TextView name = {}) const { return folder_.Path(name); }

    [[nodiscard]] Snapshot Look() {
        Snapshot files;
        for (const Text& name : Names())
            files[name] = ReadFileBytes(Path(name));
        return files;
    }

    /// Leaves exactly these files. Sound files get one fixed date, so that runs can be compared.
    void SetBack(const Snapshot& files) {
        using namespace std::chrono;
        constexpr FileTime kMade = sys_days(2009y / January / 5) + hours(9);
        for (const Text& name : Names())
            EXPECT_EQ(storage.Delete(Path(name)), 0U);
        for (const auto& [name, bytes] : files) {
            WriteFileBytes(Path(name), bytes);
            EXPECT_EQ(storage.SetLastWriteTime(Path(name), kMade), 0U);
        }
    }

    PosixStorage storage;

  private:
    [[nodiscard]] std::vector<Text> Names() {
        std::vector<Text> names;
        EXPECT_EQ(storage.ListFiles(Path(), names), 0U);
        return names;
    }

    TempFolder folder_{std::filesystem::is_directory("/dev/shm")
                           ? "/dev/shm"
                           : std::filesystem::temp_directory_path()};
};

}  // namespace orma::test
