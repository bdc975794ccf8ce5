// What the real storage promises beyond the contract of all of them.

#include "platform/posix/posix_storage.h"

#include <cerrno>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/temp_folder.h"

namespace orma {
namespace {

struct PosixStorageTest : testing::Test {
    test::TempFolder folder;
    PosixStorage storage;
    Text path = folder.Path(u"file");
};

TEST_F(PosixStorageTest, ARenameKeepsTheRightsOfTheFileThatItReplaces) {
    const Text source = folder.Path(u"new");
    test::WriteFileBytes(path, Bytes{1});
    for (const mode_t rights : {0600, 0664}) {
        test::WriteFileBytes(source, Bytes{2});
        ASSERT_EQ(::chmod(ToUtf8(source).c_str(), 0644), 0);
        ASSERT_EQ(::chmod(ToUtf8(path).c_str(), rights), 0);
        ASSERT_EQ(storage.Rename(source, path), 0U);
        struct stat info {};
        ASSERT_EQ(::stat(ToUtf8(path).c_str(), &info), 0);
        EXPECT_EQ(info.st_mode & 0777, rights);
    }
}

TEST_F(PosixStorageTest, NamesOfOtherSystemsAndEncodingsAreReached) {
    const Text name = FromUtf8("r\xE9sum\xE9");  // no UTF-8
    ASSERT_EQ(storage.CreateFolder(folder.Path(u"a\\b")), 0U);
    ASSERT_EQ(storage.CreateFolder(folder.Path(u"a/b")), 0U);
    std::unique_ptr<StorageFile> file;
    const OpenMode create{Access::kWrite, Share::kNone, Disposition::kCreateAlways};
    ASSERT_EQ(storage.Open(folder.Path(u"a\\b\\") + name, create, file), 0U);
    std::vector<Text> names;
    ASSERT_EQ(storage.ListFiles(folder.Path(u"a/b"), names), 0U);
    EXPECT_THAT(names, testing::ElementsAre(name));
    EXPECT_EQ(storage.ListFiles(folder.Path(u"c"), names), static_cast<SystemError>(ENOENT));
    EXPECT_EQ(storage.Open(folder.Path(), {}, file), static_cast<SystemError>(EISDIR));
}

TEST_F(PosixStorageTest, AFileTimeIsSetToTheNanosecond) {
    test::WriteFileBytes(path, Bytes{1});
    for (const std::int64_t moment : {1'234'567'890'123'456'789, -1'500'000'001L}) {
        FileTime time;
        ASSERT_EQ(storage.SetLastWriteTime(path, FileTime(std::chrono::nanoseconds(moment))), 0U);
        ASSERT_EQ(storage.LastWriteTime(path, time), 0U);
        EXPECT_EQ(time.time_since_epoch().count(), moment);
    }
}

TEST_F(PosixStorageTest, AMappingWhoseFileIsTakenAwayBecomesMemory) {
    std::unique_ptr<MappedFile> mapped;
    ASSERT_EQ(storage.Map(path, 8192, mapped), 0U);
    ASSERT_EQ(::truncate(ToUtf8(path).c_str(), 0), 0);
    mapped->Bytes()[5000] = 1;  // a bus error but for the guard
    EXPECT_EQ(mapped->Bytes()[5000], 1);
    mapped->BeginFlush();
    mapped.reset();
    EXPECT_EQ(test::ReadFileBytes(path), Bytes{});
}

}  // namespace
}  // namespace orma
