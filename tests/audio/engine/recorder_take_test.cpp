#include <algorithm>

#include "audio/engine/engine_fixture.h"
#include "audio/files/level_tables.h"

namespace orma::test {
namespace {

class RecorderTake : public RecorderTest {};

TEST_F(RecorderTake, BeginsAtTheBufferAfterTheRequest) {
    sheet.levels = {1, 2};
    sheet.marks = {5};
    sheet.cuts = {{1, 2, 0}};
    Engine().WavStartRecordSaving();  // while the engine rests
    EXPECT_EQ(boxes.Texts(), Texts{u"WavStartRecordSaving"});
    EXPECT_TRUE(takes.calls.empty());
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    Deliver(3);
    EXPECT_FALSE(Engine().IsSavingPending());
    Engine().WavStartRecordSaving();
    EXPECT_TRUE(Engine().IsSavingPending());
    EXPECT_EQ(sheet, LevelSheet{});
    EXPECT_EQ(takes.calls, Strings{"prepare"});

    Deliver(1);
    EXPECT_FALSE(Engine().IsSavingPending());
    EXPECT_TRUE(Engine().IsSaving());
    EXPECT_EQ(writer.calls, (Strings{"make 1", "open take_03"}));
    EXPECT_EQ(trace.back(), "Start saving");
    EXPECT_TRUE(writer.blocks.empty());

    Engine().WavStartRecordSaving();  // again: no second take
    Deliver(2);
    EXPECT_EQ(writer.blocks.size(), 2U);
    EXPECT_EQ(Engine().SavedPeriods(), 2U);
    EXPECT_EQ(listener.savedPeriods, (std::vector<std::uint32_t>{1, 2}));
    EXPECT_EQ(takes.calls, Strings{"prepare"});
}

TEST_F(RecorderTake, KeepsALevelForEveryBufferThatIsWritten) {
    StartTake();
    EXPECT_GE(sheet.levels.capacity(), 720000U);  // ten hours without an allocation
    EXPECT_GE(sheet.marks.capacity(), LevelSheet::kMaxMarks);
    input.SetInputGain(6);
    waves.in.DeliverValue(8000);  // times 510 / 256, less the first steps of the DC blocker
    waves.in.DeliverValue(-32768);
    ASSERT_EQ(sheet.levels.size(), 2U);
    EXPECT_EQ(sheet.levels[0], LevelOfPeak(15937));
    EXPECT_EQ(sheet.levels[1], 0);
    EXPECT_EQ(LoadLe<std::int16_t>(writer.blocks[0].data()), 15937);
    EXPECT_EQ(LoadLe<std::int16_t>(writer.blocks[1].data()), -32767);
    EXPECT_EQ(listener.levels.back(), 0);
}

TEST_F(RecorderTake, IsDiscardedBelowOneSecondAndWhereItNeverBegan) {
    for (const int periods : {18, 18, 0}) {
        takes.calls.clear();
        ASSERT_EQ(Engine().WavStartRecording(), 0);
        Engine().WavStartRecordSaving();
        if (periods > 0) Deliver(1 + 18);
        StopAndDrain();  // the buffer that the stop flushes is the nineteenth
        EXPECT_EQ(sheet.levels.size(), periods > 0 ? 19U : 0U);
        EXPECT_EQ(takes.calls, (Strings{"prepare", "discarded"}));
        EXPECT_FALSE(Engine().IsSavingPending());
        EXPECT_EQ(Engine().SavedPeriods(), 0U);
        EXPECT_TRUE(Engine().IsClosed());
    }
    EXPECT_EQ(std::count(writer.calls.begin(), writer.calls.end(), "close"), 2);
}

TEST_F(RecorderTake, IsKeptFromExactlyOneSecondOn) {
    audio.resolutionShift = 1;
    StartTake();
    Deliver(9);
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
    writer.healthyBlocks = 25;
    Deliver(24);
    EXPECT_TRUE(Engine().IsActive());
    Deliver(1);
    EXPECT_FALSE(Engine().IsActive());
    loop.RunPending();
    ExpectKept(25);
}

TEST_F(RecorderTake, BlinksTheIndicatorEvery400MillisecondsWhileMonitoring) {
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    Deliver(17);
    EXPECT_EQ(listener.indicator, (std::vector<bool>{true, false, true}));
    Engine().WavStopRecording();
    EXPECT_EQ(listener.indicator.back(), false);
}

TEST_F(RecorderTake, MeasuresTheLoadFromSavingOn) {
    StartTake();
    writer.whileWriting = [&] { clock.ticks += 7; };
    Deliver(110);
    EXPECT_EQ(Engine().PeakLoadMs(), 7U);
    StopAndDrain();
    EXPECT_EQ(std::count(trace.begin(), trace.end(), "pload[98]=7"), 1);
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    Deliver(1);
    EXPECT_EQ(Engine().PeakLoadMs(), 0U);
}

TEST_F(RecorderTake, SetsMarksAtTheSavedCount) {
    EXPECT_FALSE(Engine().MarkWhileRecording());
    StartTake();
    Deliver(3);
    EXPECT_TRUE(Engine().MarkWhileRecording());
    Deliver(2);
    EXPECT_TRUE(Engine().MarkWhileRecording());
    EXPECT_EQ(sheet.marks, (std::vector<std::uint32_t>{3, 5}));
    EXPECT_EQ(listener.marks, (std::vector<std::uint32_t>{1, 2}));
    for (int n = 2; n < 1003; ++n)
        ASSERT_TRUE(Engine().MarkWhileRecording());
    EXPECT_FALSE(Engine().MarkWhileRecording());
    EXPECT_EQ(sheet.marks.size(), 1003U);
    EXPECT_EQ(trace.back(), "mark refused: 1003 marks are set");
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(RecorderTake, IgnoresAForeignBuffer) {
    StartTake();
    WaveHeader foreign;
    foreign.user = 16;
    Engine().WimDataMsg(foreign);
    EXPECT_EQ(boxes.Texts(), Texts{u"WimDataMsg"});
    EXPECT_EQ(waves.in.queue.size(), 16U);
    EXPECT_EQ(Engine().SavedPeriods(), 0U);
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
    writer.whileWriting = [&] {
        writer.whileWriting = nullptr;
        waves.in.DeliverValue(1000);
        waves.in.DeliverValue(5000);
        EXPECT_EQ(writer.blocks.size(), 1U);
    };
    waves.in.DeliverValue(10);
    ASSERT_EQ(writer.blocks.size(), 3U);
    EXPECT_EQ(LoadLe<std::int16_t>(writer.blocks[0].data()), 10);
    EXPECT_NEAR(LoadLe<std::int16_t>(writer.blocks[1].data()), 1000, 20);  // less the DC blocker's
    EXPECT_NEAR(LoadLe<std::int16_t>(writer.blocks[2].data()), 5000, 1000);
    EXPECT_EQ(Engine().SavedPeriods(), 3U);
}

}  // namespace
}  // namespace orma::test
