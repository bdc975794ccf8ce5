#include "stream/file_replacement.h"

#include <algorithm>
#include <atomic>
#include <thread>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/fake_boxes.h"
#include "support/faulty_storage.h"
#include "support/temp_folder.h"

namespace orma {
namespace {

struct FileReplacementTest : testing::Test {
    FileReplacementTest() { test::WriteFileBytes(path, Bytes{'o', 'l', 'd'}); }

    std::vector<Text> Names() {
        std::vector<Text> names;
        EXPECT_EQ(storage.ListFiles(folder.Path(), names), 0U);
        return names;
    }
    void ExpectTheOldFileAlone() {
        EXPECT_EQ(test::ReadFileBytes(path), (Bytes{'o', 'l', 'd'}));
        EXPECT_THAT(Names(), testing::ElementsAre(u"file.opr"));
    }

    test::TempFolder folder;
    test::FaultyStorage storage;
    test::FakeBoxes boxes;
    ErrorReporter report{boxes, storage};
    FileServices services{storage, report};
    Text path = folder.Path(u"file.opr");
};

TEST_F(FileReplacementTest, LeavesTheOldFileWithoutACommitAndWhenAnyStepFails) {
    FileReplacement(services, path).Stream().Write("new", 3);
    ExpectTheOldFileAlone();
    for (const unsigned step :
         {test::FaultyStorage::kWrite, test::FaultyStorage::kFlush, test::FaultyStorage::kRename}) {
        boxes.shown.clear();
        {
            FileReplacement replacement(services, path);
            storage.FailAt(step, 1);
            replacement.Stream().Write("new", 3);
            EXPECT_FALSE(replacement.Commit());
        }
        storage.FailAt(step, 0);
        EXPECT_EQ(boxes.shown.size(), 1U);
        ExpectTheOldFileAlone();
    }
}

// As programs that end in the same moment do with their settings.
TEST_F(FileReplacementTest, ManyWritersTakeTurnsAndNoneSeesHalfAFile) {
    constexpr std::size_t kBytes = 3000;
    test::WriteFileBytes(path, Bytes(kBytes, 'o'));
    std::atomic<int> committed = 0;
    std::atomic<int> torn = 0;
    const auto write = [&](char letter) {
        PosixStorage own;
        test::FakeBoxes ownBoxes;
        ErrorReporter ownReport(ownBoxes, own);
        for (int i = 0; i < 12; ++i) {
            FileReplacement replacement({own, ownReport}, path);
            replacement.Stream().Write(Bytes(kBytes, static_cast<std::uint8_t>(letter)).data(),
                                       kBytes);
            committed += replacement.Commit() ? 1 : 0;
            const Bytes now = test::ReadFileBytes(path);
            torn += now.size() == kBytes && std::ranges::count(now, now[0]) == kBytes ? 0 : 1;
        }
    };
    std::vector<std::jthread> writers;
    for (const char letter : {'a', 'b', 'c', 'd'})
        writers.emplace_back(write, letter);
    writers.clear();
    EXPECT_EQ(committed, 4 * 12);
    EXPECT_EQ(torn, 0);
    EXPECT_THAT(Names(), testing::ElementsAre(u"file.opr"));
}

}  // namespace
}  // namespace orma
