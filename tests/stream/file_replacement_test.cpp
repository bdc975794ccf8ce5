#include "stream/file_replacement.h"

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

TEST_F(FileReplacementTest, ReplacesTheFileOnlyAtTheCommit) {
    FileReplacement replacement(services, path);
    replacement.Stream().Write("new", 3);
    EXPECT_EQ(test::ReadFileBytes(path), (Bytes{'o', 'l', 'd'}));
    EXPECT_TRUE(replacement.Commit());
    EXPECT_EQ(test::ReadFileBytes(path), (Bytes{'n', 'e', 'w'}));
    EXPECT_THAT(Names(), testing::ElementsAre(u"file.opr"));
}

TEST_F(FileReplacementTest, LeavesTheOldFileWithoutACommitAndWhenAnyStepFails) {
    FileReplacement(services, path).Stream().Write("new", 3);
    ExpectTheOldFileAlone();
    for (const unsigned step : {test::FaultyStorage::kWrite, test::FaultyStorage::kFlush,
                                test::FaultyStorage::kClose, test::FaultyStorage::kRename}) {
        const std::size_t boxesBefore = boxes.shown.size();
        {
            FileReplacement replacement(services, path);
            storage.FailAt(step, 1);
            replacement.Stream().Write("new", 3);
            EXPECT_FALSE(replacement.Commit());
        }
        storage.FailAt(step, 0);
        EXPECT_EQ(boxes.shown.size(), boxesBefore + 1);
        ExpectTheOldFileAlone();
    }
}

TEST_F(FileReplacementTest, DoesNotRemoveTheTemporaryFileOfAnotherWriter) {
    FileReplacement first(services, path);
    first.Stream().Write("new", 3);
    {
        FileReplacement second(services, path);
        EXPECT_FALSE(second.Stream().IsOpen());
        EXPECT_FALSE(second.Commit());
    }
    EXPECT_TRUE(first.Commit());
    EXPECT_EQ(test::ReadFileBytes(path), (Bytes{'n', 'e', 'w'}));
}

}  // namespace
}  // namespace orma
