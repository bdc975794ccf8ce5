#include <cerrno>

#include <gtest/gtest.h>

#include "platform/posix/posix_storage.h"
#include "support/memory_storage.h"
#include "support/temp_folder.h"

namespace orma::test {
namespace {

/// What every storage does, the real one and the one that tests put in its place.
template <class AnyStorage>
struct StorageContract : testing::Test {
    [[nodiscard]] Bytes Content(const Text& name) {
        std::unique_ptr<StorageFile> reader;
        Bytes bytes(64);
        std::size_t got = 0;
        EXPECT_EQ(storage.Open(name, {}, reader), 0U);
        EXPECT_EQ(reader->Read(bytes, got), 0U);
        bytes.resize(got);
        return bytes;
    }

    TempFolder folder;
    AnyStorage storage;
    Text path = folder.Path(u"file");
    std::unique_ptr<StorageFile> file;
    std::size_t count = 0;
    std::uint64_t number = 0;
};

using Storages = testing::Types<PosixStorage, MemoryStorage>;
TYPED_TEST_SUITE(StorageContract, Storages);

TYPED_TEST(StorageContract, AFileIsWrittenAnywhereAndCutAndRead) {
    constexpr OpenMode kUpdate{Access::kReadWrite, Share::kRead, Disposition::kOpenAlways};
    EXPECT_EQ(this->storage.Open(this->path, {}, this->file), static_cast<SystemError>(ENOENT));
    ASSERT_EQ(this->storage.Open(this->path, kUpdate, this->file), 0U);
    EXPECT_EQ(this->file->Write(Bytes{1, 2, 3, 4}, this->count), 0U);
    EXPECT_EQ(this->file->Seek(6, SeekFrom::kStart, this->number), 0U);
    EXPECT_EQ(this->file->Write(Bytes{7}, this->count), 0U);
    EXPECT_EQ(this->Content(this->path), (Bytes{1, 2, 3, 4, 0, 0, 7}));
    EXPECT_EQ(this->file->Truncate(3), 0U);
    EXPECT_NE(this->file->Seek(-4, SeekFrom::kEnd, this->number), 0U);
    EXPECT_EQ(this->file->Seek(-1, SeekFrom::kEnd, this->number), 0U);
    Bytes rest(4);
    EXPECT_EQ(this->file->Read(rest, this->count), 0U);
    EXPECT_EQ(this->count, 1U);
    EXPECT_EQ(this->file->Size(this->number), 0U);
    EXPECT_EQ(this->number, 3U);
}

TYPED_TEST(StorageContract, OneWriterAtATimeAndOnlyWriterWrites) {
    constexpr OpenMode kCreate{Access::kWrite, Share::kNone, Disposition::kCreateAlways};
    std::unique_ptr<StorageFile> other;
    ASSERT_EQ(this->storage.Open(this->path, kCreate, this->file), 0U);
    EXPECT_EQ(this->storage.Open(this->path, kCreate, other), static_cast<SystemError>(EBUSY));
    ASSERT_EQ(this->storage.Open(this->path, {}, other), 0U);
    EXPECT_NE(other->Write(Bytes{1}, this->count), 0U);
    EXPECT_EQ(this->file->Close(), 0U);
    EXPECT_NE(this->file->Close(), 0U);
    EXPECT_EQ(this->storage.Open(this->path, kCreate, this->file), 0U);
}

TYPED_TEST(StorageContract, AMappedFileShowsWhatIsStoredAtOnceAndKeepsOthersOut) {
    constexpr OpenMode kUpdate{.access = Access::kReadWrite};
    std::unique_ptr<MappedFile> mapped;
    std::unique_ptr<MappedFile> second;
    ASSERT_EQ(this->storage.Map(this->path, 60, mapped), 0U);
    EXPECT_EQ(this->Content(this->path), Bytes(60));
    mapped->Bytes()[59] = 5;
    mapped->BeginFlush();
    EXPECT_EQ(this->Content(this->path).back(), 5);
    EXPECT_EQ(this->storage.Map(this->path, 60, second), static_cast<SystemError>(EBUSY));
    EXPECT_EQ(this->storage.Open(this->path, kUpdate, this->file), static_cast<SystemError>(EBUSY));
    mapped.reset();
    EXPECT_EQ(this->storage.Open(this->path, kUpdate, this->file), 0U);
    this->file.reset();
    EXPECT_EQ(this->storage.Map(this->path, 8, second), 0U);
    EXPECT_EQ(this->Content(this->path), Bytes(8));
}

TYPED_TEST(StorageContract, ARenameReplacesAndADeletedFileIsGone) {
    constexpr OpenMode kCreate{Access::kWrite, Share::kNone, Disposition::kCreateAlways};
    const Text target = this->folder.Path(u"target");
    for (const Text& name : {this->path, target}) {
        ASSERT_EQ(this->storage.Open(name, kCreate, this->file), 0U);
        EXPECT_EQ(this->file->Write(AsBytes(ToUtf8(name)), this->count), 0U);
        this->file.reset();
    }
    const Bytes moved = this->Content(this->path);
    EXPECT_EQ(this->storage.Rename(this->path, target), 0U);
    EXPECT_EQ(this->Content(target), moved);
    EXPECT_FALSE(this->storage.Exists(this->path));
    EXPECT_EQ(this->storage.Rename(this->path, target), static_cast<SystemError>(ENOENT));
    std::vector<Text> names;
    EXPECT_EQ(this->storage.ListFiles(this->folder.Path(), names), 0U);
    EXPECT_EQ(names, std::vector<Text>{u"target"});
    EXPECT_EQ(this->storage.Delete(target), 0U);
    EXPECT_EQ(this->storage.Delete(target), static_cast<SystemError>(ENOENT));
}

}  // namespace
}  // namespace orma::test
