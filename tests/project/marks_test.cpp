#include "project/marks.h"

#include <gtest/gtest.h>

#include "audio/files/vu_file.h"
#include "project_rig.h"

namespace orma {
namespace {

TEST(Marks, AreKeptInOrderAndInTheLevelFile) {
    test::ProjectRig rig;
    rig.RecordTake(40);
    for (const std::uint32_t position : {9U, 2U, 5U, 5U})
        EXPECT_TRUE(InsertMark(rig.files.services, rig.recording, position));
    const std::vector<std::uint32_t> marks = {2, 5, 5, 9};
    EXPECT_EQ(rig.recording.sheet.marks, marks);
    EXPECT_EQ(GetVuMarks(rig.files.services, rig.recording.levelPath), marks);
    EXPECT_EQ(FindMark(rig.recording.sheet, 9), 3U);
    EXPECT_EQ(FindMark(rig.recording.sheet, 4), 4U);
}

TEST(Marks, AreRefusedWhenTheyCannotBeKept) {
    test::ProjectRig rig;
    rig.RecordTake(40);
    std::vector<std::uint32_t>& marks = rig.recording.sheet.marks;
    marks.assign(LevelSheet::kMaxMarks, 3);
    EXPECT_FALSE(InsertMark(rig.files.services, rig.recording, 4));
    EXPECT_EQ(marks.size(), LevelSheet::kMaxMarks);
    marks = {3};
    ASSERT_EQ(rig.files.storage.CreateFolder(rig.recording.levelPath + u".tmp"), 0U);
    EXPECT_FALSE(InsertMark(rig.files.services, rig.recording, 4));
    EXPECT_EQ(marks, std::vector<std::uint32_t>{3});
    EXPECT_EQ(rig.files.boxes.shown.size(), 1U);
}

}  // namespace
}  // namespace orma
