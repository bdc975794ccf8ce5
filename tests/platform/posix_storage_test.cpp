// What every storage does, the real one and the one that tests put in its place.

#include "platform/posix/posix_storage.h"

#include <cerrno>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include "support/memory_storage.h"
#include "support/temp_folder.h"

namespace orma::test {
namespace {

constexpr auto kBusy = static_cast<SystemError>(EBUSY);
constexpr auto kMissing = static_cast<SystemError>(ENOENT);
constexpr OpenMode kCreate{Access::kWrite, Share::kNone, Disposition::kCreateAlways};
constexpr OpenMode kUpdate{Access::kReadWrite, Share::kRead, Disposition::kOpenAlways};

struct StorageContract : testing::TestWithParam<bool> {
    [[nodiscard]] Bytes Content(const Text& name) {
        std::unique_ptr<StorageFile> reader;
        Bytes bytes(64);
        EXPECT_EQ(storage.Open(name, {}, reader), 0U);
        EXPECT_EQ(reader->Read(bytes, count), 0U);
        bytes.resize(count);
        return bytes;
    }

    TempFolder folder;
    PosixStorage real;
    MemoryStorage inMemory;
    Storage& storage = GetParam() ? static_cast<Storage&>(real) : inMemory;
    Text path = folder.Path(u"file");
    std::unique_ptr<StorageFile> file;
    std::unique_ptr<StorageFile> other;
    std::size_t count = 0;
    std::uint64_t number = 0;
};

INSTANTIATE_TEST_SUITE_P(, StorageContract, testing::Bool());

TEST_P(StorageContract, AFileIsWrittenAnywhereAndCutAndRead) {
    EXPECT_EQ(storage.Open(path, {}, file), kMissing);
    ASSERT_EQ(storage.Open(path, kUpdate, file), 0U);
    EXPECT_EQ(file->Write(Bytes{1, 2, 3, 4}, count), 0U);
    EXPECT_EQ(file->Seek(6, SeekFrom::kStart, number), 0U);
    EXPECT_EQ(file->Write(Bytes{7}, count), 0U);
    EXPECT_EQ(Content(path), (Bytes{1, 2, 3, 4, 0, 0, 7}));
    EXPECT_EQ(file->Truncate(3), 0U);
    EXPECT_NE(file->Seek(-4, SeekFrom::kEnd, number), 0U);
    EXPECT_EQ(file->Seek(-1, SeekFrom::kEnd, number), 0U);
    Bytes rest(4);
    EXPECT_EQ(file->Read(rest, count), 0U);
    EXPECT_EQ(count, 1U);
    EXPECT_EQ(file->Size(number), 0U);
    EXPECT_EQ(number, 3U);
}

TEST_P(StorageContract, OneWriterAtATimeAndOnlyWriterWrites) {
    ASSERT_EQ(storage.Open(path, kCreate, file), 0U);
    EXPECT_EQ(storage.Open(path, kCreate, other), kBusy);
    ASSERT_EQ(storage.Open(path, {}, other), 0U);
    EXPECT_NE(other->Write(Bytes{1}, count), 0U);
    EXPECT_EQ(file->Close(), 0U);
    EXPECT_NE(file->Close(), 0U);
    EXPECT_EQ(storage.Open(path, kCreate, file), 0U);
}

TEST_P(StorageContract, AMappedFileShowsWhatIsStoredAtOnceAndKeepsOthersOut) {
    std::unique_ptr<MappedFile> mapped;
    std::unique_ptr<MappedFile> second;
    ASSERT_EQ(storage.Map(path, 60, mapped), 0U);
    EXPECT_EQ(Content(path), Bytes(60));
    mapped->Bytes()[59] = 5;
    mapped->BeginFlush();
    EXPECT_EQ(Content(path).back(), 5);
    EXPECT_EQ(storage.Map(path, 60, second), kBusy);
    EXPECT_EQ(storage.Open(path, kUpdate, file), kBusy);
    mapped.reset();
    EXPECT_EQ(storage.Open(path, kUpdate, file), 0U);
    file.reset();
    EXPECT_EQ(storage.Map(path, 8, second), 0U);
    EXPECT_EQ(Content(path), Bytes(8));
}

TEST_P(StorageContract, ARenameReplacesAndADeletedFileIsGone) {
    const Text target = folder.Path(u"target");
    for (const Text& name : {path, target}) {
        ASSERT_EQ(storage.Open(name, kCreate, file), 0U);
        EXPECT_EQ(file->Write(AsBytes(ToUtf8(name)), count), 0U);
        file.reset();
    }
    const Bytes moved = Content(path);
    EXPECT_EQ(storage.Rename(path, target), 0U);
    EXPECT_EQ(Content(target), moved);
    EXPECT_EQ(storage.Rename(path, target), kMissing);
    std::vector<Text> names;
    EXPECT_EQ(storage.ListFiles(folder.Path(), names), 0U);
    EXPECT_EQ(names, std::vector<Text>{u"target"});
    EXPECT_EQ(storage.Delete(target), 0U);
    EXPECT_FALSE(storage.Exists(target));
    EXPECT_EQ(storage.Delete(target), kMissing);
}

/// What the real one promises besides.
struct PosixStorageTest : testing::Test {
    TempFolder folder;
    PosixStorage storage;
    Text path = folder.Path(u"file");
};

TEST_F(PosixStorageTest, ARenameKeepsTheRightsOfTheFileThatItReplaces) {
    const Text source = folder.Path(u"new");
    WriteFileBytes(path, Bytes{1});
    for (const mode_t rights : {0600, 0664}) {
        WriteFileBytes(source, Bytes{2});
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
    ASSERT_EQ(storage.Open(folder.Path(u"a\\b\\") + name, kCreate, file), 0U);
    std::vector<Text> names;
    ASSERT_EQ(storage.ListFiles(folder.Path(u"a/b"), names), 0U);
    EXPECT_THAT(names, testing::ElementsAre(name));
    EXPECT_EQ(storage.ListFiles(folder.Path(u"c"), names), static_cast<SystemError>(ENOENT));
    EXPECT_EQ(storage.Open(folder.Path(), {}, file), static_cast<SystemError>(EISDIR));
}

TEST_F(PosixStorageTest, AFileTimeIsSetToTheNanosecond) {
    WriteFileBytes(path, Bytes{1});
    for (const std::int64_t moment : {1'234'567'890'123'456'789, -1'500'000'001L}) {
        const FileTime wanted{std::chrono::nanoseconds(moment)};
        FileTime time;
        ASSERT_EQ(storage.SetLastWriteTime(path, wanted), 0U);
        ASSERT_EQ(storage.LastWriteTime(path, time), 0U);
        EXPECT_EQ(time, wanted);
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
    EXPECT_EQ(ReadFileBytes(path), Bytes{});
}

}  // namespace
}  // namespace orma::test
