#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "audio/files/take_journal.h"
#include "audio/files/wav_header.h"
#include "project_rig.h"

namespace orma {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct JournalSettling : testing::Test {
    /// What an interruption leaves of the staged sound of take 00.
    void LeaveJournal(ByteSpan sound) {
        TakeJournal journal;
        ASSERT_TRUE(
            journal.Start(rig.files.services, rig.Path(u"talk00.wav"), {.blockBytes = 4096}, 0));
        journal.Append(sound);
        journal.Close();
    }

    test::ProjectRig rig;
};

TEST_F(JournalSettling, SoundThatFitsNowhereIsKeptBesideTheTake) {
    rig.AddRecording(u"talk00", 40);
    (void)rig.AddProjectFile(u"talk", {u"talk00"});
    const Bytes take = test::ReadFileBytes(rig.Path(u"talk00.wav"));
    LeaveJournal(Bytes(600, 0x5A));  // of another recording
    const Bytes journal = test::ReadFileBytes(rig.Path(u"talk00.rec"));
    ASSERT_TRUE(rig.project.LoadProject());
    rig.project.RecoverTakes();
    EXPECT_EQ(test::ReadFileBytes(rig.Path(u"talk00.wav")), take);
    EXPECT_FALSE(rig.Exists(u"talk00.rec"));
    EXPECT_EQ(test::ReadFileBytes(rig.Path(u"talk00 (kept 1).rec")), journal);
    EXPECT_EQ(rig.ShownNames(), std::vector<Text>{u"talk00"});
}

TEST_F(JournalSettling, LessThanAPeriodIsNoClipButStays) {
    WavHeader header;
    const auto head = header.Encode();
    Bytes sound(head.begin(), head.end());
    sound.resize(sound.size() + test::ProjectRig::kPeriodBytes / 2, 0x11);
    LeaveJournal(sound);
    rig.project.RecoverTakes();
    EXPECT_THAT(rig.ShownNames(), IsEmpty());
    EXPECT_THAT(rig.project.LeftAlone(), ElementsAre(u"talk00"));
    EXPECT_FALSE(rig.Exists(u"talk00.rec")) << "it is looked at once";
    const Bytes take = test::ReadFileBytes(rig.Path(u"talk00.wav"));
    ASSERT_EQ(take.size(), sound.size());
    EXPECT_TRUE(std::equal(take.begin() + 44, take.end(), sound.begin() + 44));
    EXPECT_EQ(rig.project.PrepareTake(), u"talk01");
}

}  // namespace
}  // namespace orma
