#include <algorithm>

#include "audio/engine/engine_fixture.h"
#include "audio/files/level_tables.h"

namespace orma::test {
namespace {

class RecorderTake : public RecorderTest {};

TEST_F(RecorderTake, BeginsAtTheBufferAfterTheRequest) {
    sheet = {.marks = {5}, .cuts = {{1, 2, 0}}, .levels = {1, 2}};
    Engine().WavStartRecordSaving();  // while the engine rests
    EXPECT_EQ(boxes.Texts(), Texts{u"WavStartRecordSaving"});
    EXPECT_TRUE(takes.calls.empty());
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    Deliver(3);
    EXPECT_FALSE(Engine().IsSavingPending());
    Engine().WavStartRecordSaving();
    EXPECT_TRUE(Engine().IsSavingPending());
    EXPECT_EQ(sheet, LevelSheet{});

    Deliver(1);
    EXPECT_FALSE(Engine().IsSavingPending());
    EXPECT_TRUE(Engine().IsSaving());
    EXPECT_EQ(writers.calls, (Strings{"make 1", "open take_03"}));
    EXPECT_TRUE(writers.blocks.empty());

    Engine().WavStartRecordSaving();  // again: no second take
    Deliver(2);
    EXPECT_EQ(writers.blocks.size(), 2U);
    EXPECT_EQ(Engine().SavedPeriods(), 2U);
    EXPECT_EQ(takes.calls, Strings{"prepare"});
}

TEST_F(RecorderTake, KeepsALevelForEveryBufferThatIsWritten) {
    StartTake();
    EXPECT_GE(sheet.levels.capacity(), 720000U);  // ten hours without an allocation
    EXPECT_GE(sheet.marks.capacity(), LevelSheet::kMaxMarks);
    input.SetInputGain(6);
    Deliver(1, 8000);  // times 510 / 256, less the first steps of the DC blocker
    Deliver(1, -32768);
    ASSERT_EQ(sheet.levels.size(), 2U);
    EXPECT_EQ(sheet.levels[0], LevelOfPeak(15937));
    EXPECT_EQ(sheet.levels[1], 0);
    EXPECT_EQ(First(writers.blocks[0]), 15937);
    EXPECT_EQ(First(writers.blocks[1]), -32767);
    EXPECT_EQ(listener.levels.back(), 0);
}

TEST_F(RecorderTake, IsDiscardedBelowOneSecondAndWhereItNeverBegan) {
    for (const std::size_t levels : {19U, 19U, 0U}) {
        takes.calls.clear();
        ASSERT_EQ(Engine().WavStartRecording(), 0);
        Engine().WavStartRecordSaving();
        Deliver(levels);  // the first begins the take, and the stop flushes one
        StopAndDrain();
        EXPECT_EQ(sheet.levels.size(), levels);
        EXPECT_EQ(takes.calls, (Strings{"prepare", "discarded"}));
        EXPECT_FALSE(Engine().IsSavingPending());
        EXPECT_EQ(Engine().SavedPeriods(), 0U);
        EXPECT_TRUE(Engine().IsClosed());
    }
    EXPECT_EQ(std::count(writers.calls.begin(), writers.calls.end(), "close"), 2);
}

TEST_F(RecorderTake, IsKeptFromExactlyOneSecondOn) {
    audio.resolutionShift = 1;
    StartTake(9);
    StopAndDrain();
    ExpectKept(10);
    EXPECT_EQ(sheet.rangeStart, 0U);
    EXPECT_EQ(sheet.levels.back(), kQuietLevel);  // its place in the ring was never measured
    EXPECT_EQ(sheet.resolutionShift, 1U);
    EXPECT_EQ(listener.events, (Strings{"started", "stopped", "closed"}));
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(RecorderTake, EndsWhenTheWriterTurnsUnhealthy) {
    StartTake();
    writers.healthyBlocks = 25;
    Deliver(24);
    EXPECT_TRUE(Engine().IsActive());
    Deliver(1);
    EXPECT_FALSE(Engine().IsActive());
    loop.RunPending();
    ExpectKept(25);
}

TEST_F(RecorderTake, SetsMarksAtTheSavedCount) {
    EXPECT_FALSE(Engine().MarkWhileRecording());
    StartTake(3);
    EXPECT_TRUE(Engine().MarkWhileRecording());
    Deliver(2);
    EXPECT_TRUE(Engine().MarkWhileRecording());
    EXPECT_EQ(sheet.marks, (std::vector<std::uint32_t>{3, 5}));
    for (int n = 2; n < 1003; ++n)
        ASSERT_TRUE(Engine().MarkWhileRecording());
    EXPECT_FALSE(Engine().MarkWhileRecording());
    EXPECT_EQ(sheet.marks.size(), 1003U);
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(RecorderTake, GoesOnWhenABufferFallsOutOfCirculationButNotWithoutAny) {
    StartTake();
    waves.in.results["Unprepare#3"] = WaveResult::kFailed;
    waves.in.results["Add#20"] = WaveResult::kFailed;
    Deliver(20);
    EXPECT_EQ(boxes.Texts(), (Texts{u"waveInUnprepareHeader", u"waveInAddBuffer"}));
    EXPECT_EQ(waves.in.queue.size(), 15U);
    waves.in.results["Add"] = WaveResult::kFailed;
    Deliver(15);
    ExpectKept(35);
}

TEST_F(RecorderTake, HoldsBuffersBackBehindABoxOfTheWriter) {
    StartTake();
    writers.whileWriting = [&] {
        writers.whileWriting = nullptr;
        Deliver(1, 1000);
        Deliver(1, 5000);
        EXPECT_EQ(writers.blocks.size(), 1U);
    };
    Deliver(1, 10);
    ASSERT_EQ(writers.blocks.size(), 3U);
    EXPECT_EQ(First(writers.blocks[0]), 10);
    EXPECT_NEAR(First(writers.blocks[1]), 1000, 20);  // less the DC blocker's
    EXPECT_NEAR(First(writers.blocks[2]), 5000, 1000);
    EXPECT_EQ(Engine().SavedPeriods(), 3U);
}

}  // namespace
}  // namespace orma::test
