#include "audio/files/vu_file.h"

#include <numeric>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "support/byte_builder.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

using ::testing::ElementsAre;
using Levels = std::vector<std::uint8_t>;

const LevelSheet kSmallSheet{.rangeStart = 1,
                             .rangeEnd = 5,
                             .marks = {2, 4},
                             .cuts = {{1, 3, 77}},
                             .levels = {10, 11, 12, 13, 14},
                             .resolutionShift = 1};

Bytes SmallFile() {
    ByteBuilder file;
    file.Put("UVOJ").U32(3).U32(1).U32(5).U32(5).U32(2).U32(1);
    file.U32(2).U32(4).U32(1).U32(3).U32(77);
    return file.Put(Levels{10, 11, 12, 13, 14}).U32(1).bytes;
}

struct VuFileTest : testing::Test, TestFiles {
    /// Levels of [begin, end) of a recording whose level bytes are 0, 1, 2 ... 39.
    Levels Read(std::vector<RemovedRange> cuts, std::uint32_t begin, std::uint32_t end) {
        LevelSheet sheet{
            .rangeEnd = 40, .marks = {}, .cuts = std::move(cuts), .levels = Levels(40)};
        std::iota(sheet.levels.begin(), sheet.levels.end(), std::uint8_t{0});
        EXPECT_TRUE(WriteVuFile(services, path, sheet));
        return GetVuFileData(services, path, begin, end);
    }

    Text path = folder.Path(u"take00.jvu");
};

TEST_F(VuFileTest, LayoutIsHeadMarksCutsLevelsAndShift) {
    ASSERT_TRUE(WriteVuFile(services, path, kSmallSheet));
    EXPECT_EQ(ReadFileBytes(path), SmallFile());
    EXPECT_EQ(ReadVuFile(services, path), kSmallSheet);
    EXPECT_THAT(GetVuMarks(services, path), ElementsAre(2, 4));
    EXPECT_THAT(GetVuRemovedRanges(services, path), ElementsAre(RemovedRange{1, 3, 77}));
}

TEST_F(VuFileTest, OldFilesHaveTwentyByteHeads) {
    // The low 12 bits of the version count.
    WriteFileBytes(path,
                   ByteBuilder().Put("UVOJ").U32(0x5001).U32(1).U32(3).U32(3).Put("abc").bytes);
    EXPECT_EQ(GetVuFileData(services, path, 0, 0), (Levels{'b', 'c'}));
    EXPECT_EQ(
        ReadVuFile(services, path),
        (LevelSheet{
            .rangeStart = 1, .rangeEnd = 3, .marks = {}, .cuts = {}, .levels = {'a', 'b', 'c'}}));
}

TEST_F(VuFileTest, RangesSkipWhatWasRemoved) {
    EXPECT_EQ(Read({{10, 38, 0}}, 8, 40), (Levels{8, 9, 38, 39}));
    // Begins inside a removed range; one lies wholly before, one reaches past the end.
    EXPECT_EQ(Read({{0, 3, 0}, {5, 12, 0}, {15, 40, 0}}, 6, 20), (Levels{12, 13, 14}));
    // The end of a cut is no part of it, its begin is.
    EXPECT_EQ(Read({{5, 10, 0}}, 10, 12), (Levels{10, 11}));
    EXPECT_EQ(Read({{5, 10, 0}}, 4, 5), (Levels{4}));
    EXPECT_EQ(Read({{0, 40, 0}}, 3, 30), Levels{});
    // Cuts that touch, overlap, nest or are empty.
    EXPECT_EQ(
        Read({{2, 5, 0}, {5, 8, 0}, {9, 20, 0}, {12, 14, 0}, {18, 35, 0}, {36, 36, 0}}, 0, 38),
        (Levels{0, 1, 8, 35, 36, 37}));
    // What lies behind the levels is not read as levels.
    EXPECT_EQ(Read({}, 38, 1000), (Levels{38, 39}));
}

TEST_F(VuFileTest, DamagedFilesAreReportedByNameAndYieldNothing) {
    const Bytes whole = SmallFile();
    std::vector<Bytes> damaged(4, whole);
    damaged[0][0] = 'u';
    for (const std::size_t count : {1, 2, 3})
        StoreLe<std::uint32_t>(&damaged[count][12 + 4 * count], 0xFFFFFFFF);
    for (const std::size_t size : {0UL, 19UL, 27UL, whole.size() - 5})
        damaged.emplace_back(whole.begin(), whole.begin() + static_cast<long>(size));
    for (const Bytes& file : damaged) {
        WriteFileBytes(path, file);
        boxes.shown.clear();
        EXPECT_FALSE(ReadVuFile(services, path));
        EXPECT_FALSE(GetVuFileHeader(services, path));
        EXPECT_EQ(GetVuFileData(services, path, 0, 5), Levels{});
        EXPECT_EQ(boxes.Texts(), std::vector<Text>(3, path));
    }
}

TEST_F(VuFileTest, ListsOutOfOrderAndImpossibleShiftsAreSetRight) {
    Bytes file = SmallFile();
    std::swap(file[28], file[32]);
    file[file.size() - 4] = 200;
    LevelSheet expected = kSmallSheet;
    expected.resolutionShift = 2;
    EXPECT_EQ(DecodeVuFile(file), expected);
}

TEST_F(VuFileTest, ASelectionDropsWhatTouchesItsEdges) {
    const LevelSheet sheet{.marks = {1, 3, 4, 7, 8},
                           .cuts = {{0, 4, 1}, {3, 5, 2}, {4, 6, 3}, {6, 8, 4}},
                           .levels = {0, 1, 2, 3, 4, 5, 6}};
    EXPECT_EQ(
        SheetOfSelection(sheet, 3, 8),
        (LevelSheet{
            .rangeEnd = 5, .marks = {1, 4}, .cuts = {{1, 3, 3}}, .levels = {3, 4, 5, 6, 79}}));
}

TEST(LevelSheetTest, NetLengthLeavesOutEveryCoveredPeriodOnce) {
    const std::vector<RemovedRange> cuts = {
        {30, 33, 0}, {2, 9, 0}, {4, 6, 0}, {8, 12, 0}, {20, 15, 0}};
    EXPECT_EQ(NetLength(cuts, 0, 40), 40U - 10 - 3);
    EXPECT_EQ(NetLength(cuts, 5, 32), 27U - 7 - 2);
    EXPECT_EQ(NetLength(cuts, 30, 33), 0U);
}

}  // namespace
}  // namespace orma::test
