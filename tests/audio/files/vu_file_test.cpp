#include "audio/files/vu_file.h"

#include <numeric>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "base/trace.h"
#include "support/byte_builder.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Levels = std::vector<std::uint8_t>;

LevelSheet SmallSheet() {
    LevelSheet sheet;
    sheet.rangeStart = 1;
    sheet.rangeEnd = 5;
    sheet.marks = {2, 4};
    sheet.cuts = {{1, 3, 77}};
    sheet.levels = {10, 11, 12, 13, 14};
    sheet.resolutionShift = 1;
    return sheet;
}

Bytes SmallFile() {
    ByteBuilder file;
    file.Put("UVOJ").U32(3).U32(1).U32(5).U32(5).U32(2).U32(1);
    file.U32(2).U32(4).U32(1).U32(3).U32(77);
    return file.Put(Levels{10, 11, 12, 13, 14}).U32(1).bytes;
}

class VuFileTest : public ::testing::Test {
  protected:
    VuFileTest() {
        SetTraceSink([this](std::string_view line) { trace_.emplace_back(line); });
    }
    ~VuFileTest() override { SetTraceSink({}); }

    /// Levels of [begin, end) of a recording whose level bytes are 0, 1, 2 ... 39.
    Levels Read(std::vector<RemovedRange> cuts, std::uint32_t begin, std::uint32_t end) {
        LevelSheet sheet;
        sheet.rangeEnd = 40;
        sheet.cuts = std::move(cuts);
        sheet.levels.resize(40);
        std::iota(sheet.levels.begin(), sheet.levels.end(), std::uint8_t{0});
        EXPECT_TRUE(WriteVuFile(files_.services, path_, sheet));
        return GetVuFileData(files_.services, path_, begin, end);
    }

    TestFiles files_;
    Text path_ = files_.folder.Path(u"take00.jvu");
    std::vector<std::string> trace_;
};

TEST_F(VuFileTest, LayoutIsHeadMarksCutsLevelsAndShift) {
    ASSERT_TRUE(WriteVuFile(files_.services, path_, SmallSheet()));
    EXPECT_EQ(ReadFileBytes(path_), SmallFile());
    EXPECT_EQ(ReadVuFile(files_.services, path_), SmallSheet());
    EXPECT_THAT(GetVuMarks(files_.services, path_), ElementsAre(2, 4));
    EXPECT_THAT(GetVuRemovedRanges(files_.services, path_), ElementsAre(RemovedRange{1, 3, 77}));
}

TEST_F(VuFileTest, OldFilesHaveTwentyByteHeads) {
    // The low 12 bits of the version count.
    const Bytes file = ByteBuilder().Put("UVOJ").U32(0x5001).U32(1).U32(3).U32(3).Put("abc").bytes;
    WriteFileBytes(path_, file);
    EXPECT_THAT(GetVuFileData(files_.services, path_, 0, 0), ElementsAre('b', 'c'));
    LevelSheet expected;
    expected.rangeStart = 1;
    expected.rangeEnd = 3;
    expected.levels = {'a', 'b', 'c'};
    expected.resolutionShift = 2;
    EXPECT_EQ(ReadVuFile(files_.services, path_), expected);
}

TEST_F(VuFileTest, RangesSkipWhatWasRemoved) {
    EXPECT_EQ(Read({{10, 38, 0}}, 8, 40), (Levels{8, 9, 38, 39}));
    // Begins inside a removed range; one lies wholly before, one reaches past the end.
    EXPECT_EQ(Read({{0, 3, 0}, {5, 12, 0}, {15, 40, 0}}, 6, 20), (Levels{12, 13, 14}));
    // The end of a cut is no part of it, its begin is.
    EXPECT_EQ(Read({{5, 10, 0}}, 10, 12), (Levels{10, 11}));
    EXPECT_EQ(Read({{5, 10, 0}}, 4, 5), (Levels{4}));
    EXPECT_THAT(Read({{0, 40, 0}}, 3, 30), IsEmpty());
    // Cuts that touch, overlap, nest or are empty.
    EXPECT_EQ(
        Read({{2, 5, 0}, {5, 8, 0}, {9, 20, 0}, {12, 14, 0}, {18, 35, 0}, {36, 36, 0}}, 0, 38),
        (Levels{0, 1, 8, 35, 36, 37}));
    // What lies behind the levels is not read as levels.
    EXPECT_EQ(Read({}, 38, 1000), (Levels{38, 39}));
}

TEST_F(VuFileTest, DamagedFilesAreReportedByNameAndYieldNothing) {
    const auto refused = [this](const Bytes& file) {
        WriteFileBytes(path_, file);
        files_.boxes.shown.clear();
        const bool none = !ReadVuFile(files_.services, path_) &&
                          GetVuFileData(files_.services, path_, 0, 5).empty() &&
                          GetVuMarks(files_.services, path_).empty() &&
                          !GetVuFileHeader(files_.services, path_);
        return none && files_.boxes.Texts() == std::vector<Text>(4, path_);
    };
    const Bytes whole = SmallFile();
    Bytes magic = whole;
    magic[0] = 'u';
    EXPECT_TRUE(refused(magic));
    EXPECT_THAT(trace_, ::testing::Contains("GetVuFileHeader in GetVuFileData"));
    EXPECT_THAT(trace_, ::testing::Contains("GetVuFileHeader"));
    for (const std::size_t size : {0UL, 19UL, 27UL, whole.size() - 5})
        EXPECT_TRUE(refused(Bytes(whole.begin(), whole.begin() + static_cast<long>(size)))) << size;
    for (const std::size_t count : {16UL, 20UL, 24UL}) {
        Bytes bad = whole;
        StoreLe<std::uint32_t>(&bad[count], 0xFFFFFFFF);
        EXPECT_TRUE(refused(bad)) << count;
    }
}

TEST_F(VuFileTest, ListsOutOfOrderAndImpossibleShiftsAreSetRight) {
    Bytes file = SmallFile();
    std::swap(file[28], file[32]);
    file[file.size() - 4] = 200;
    LevelSheet expected = SmallSheet();
    expected.resolutionShift = 2;
    EXPECT_EQ(DecodeVuFile(file), expected);
}

TEST_F(VuFileTest, ASelectionDropsWhatTouchesItsEdges) {
    LevelSheet sheet;
    sheet.marks = {1, 3, 4, 7, 8};
    sheet.cuts = {{0, 4, 1}, {3, 5, 2}, {4, 6, 3}, {6, 8, 4}};
    sheet.levels = {0, 1, 2, 3, 4, 5, 6};
    ASSERT_TRUE(WriteVuFileForSelection(files_.services, path_, sheet, 3, 8));
    LevelSheet expected;
    expected.rangeEnd = 5;
    expected.marks = {1, 4};
    expected.cuts = {{1, 3, 3}};
    expected.levels = {3, 4, 5, 6, 79};
    EXPECT_EQ(ReadVuFile(files_.services, path_), expected);
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
