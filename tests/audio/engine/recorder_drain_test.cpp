#include <cstdlib>

#include "audio/engine/engine_fixture.h"

namespace orma::test {
namespace {

class RecorderDrain : public RecorderTest {
  protected:
    /// Lets a square wave without offset wait in the device.
    void Backlog(std::size_t bytes, std::int16_t sample) {
        Bytes& backlog = waves.in.backlog;
        const std::size_t begin = backlog.size();
        backlog.resize(begin + bytes);
        for (std::size_t at = 0; at < bytes; at += 2)
            StoreLe(&backlog[begin + at],
                    static_cast<std::int16_t>(at % 4 == 0 ? sample : -sample));
    }
};

TEST_F(RecorderDrain, SavesTheBufferInProgressAsItIs) {
    input.SetInputGain(20);
    StartTake();
    for (std::int16_t sample = 100; sample <= 3000; sample += 100)
        Deliver(1, sample);
    Backlog(1000, 700);
    StopAndDrain();
    ASSERT_EQ(writers.blocks.size(), 31U);
    const Bytes& last = writers.blocks.back();
    EXPECT_EQ(last.size(), kBufferBytes);
    EXPECT_EQ(First(last), 700);  // without the gain
    EXPECT_EQ(LoadLe<std::int16_t>(&last[996]), 700);
    EXPECT_EQ(LoadLe<std::int16_t>(&last[1000]), 0);
    // Its place in the ring last held the fifteenth.
    EXPECT_EQ(sheet.levels.back(), sheet.levels[14]);
    EXPECT_EQ(sheet.rangeEnd, 31U);
}

TEST_F(RecorderDrain, LosesNothingOfABacklog) {
    input.SetInputGain(20);
    StartTake();
    Deliver(20, 10);
    // More than the sixteen buffers hold, each block louder than the one before.
    for (std::int16_t n = 0; n < 40; ++n)
        Backlog(kBufferBytes, static_cast<std::int16_t>(1000 + 40 * n));
    Backlog(400, 700);
    Engine().WavStopRecording();
    EXPECT_EQ(Engine().WavStartRecording(), 1);  // not before the take is whole
    loop.RunPending();
    ASSERT_EQ(writers.blocks.size(), 61U);
    for (int n = 0; n < 40; ++n) {
        const auto block = static_cast<std::size_t>(20 + n);
        // Processed and measured like any other.
        EXPECT_NEAR(std::abs(First(writers.blocks[block])), 10 * (1000 + 40 * n), 150) << n;
        EXPECT_LT(sheet.levels[block], sheet.levels[19]);
    }
    EXPECT_EQ(First(writers.blocks[60]), 700);
    ExpectKept(61);
}

TEST_F(RecorderDrain, SavesABacklogAtTheEndOfTheBudgetButNotMore) {
    storage.freeBytes = (1024ULL + 173) << 10;  // 40 periods
    StartTake();
    ASSERT_EQ(Engine().Budget(), 40U);
    Backlog(100 * kBufferBytes, 200);
    Deliver(39);
    EXPECT_TRUE(Engine().IsActive());
    Deliver(1);
    EXPECT_FALSE(Engine().IsActive());
    EXPECT_EQ(writers.blocks.size(), 40U);
    loop.RunPending();
    ExpectKept(55);
}

TEST_F(RecorderDrain, FinishesTheTakeOnceWhenBuffersReturnBehindItsBoxes) {
    StartTake(25);
    waves.in.flushOnReset = false;
    writers.whileClosing = [&] { waves.in.FlushReset(); };
    Engine().WavStopRecording();
    waves.in.Deliver({});
    EXPECT_EQ(listener.events, (Strings{"started", "stopped", "closed"}));
    ExpectKept(26);
}

TEST_F(RecorderDrain, ClosesTheTakeAlsoWhenTheDeviceDoesNotStop) {
    StartTake(25);
    waves.in.results["Stop"] = WaveResult::kFailed;
    StopAndDrain();
    EXPECT_EQ(boxes.Texts(), Texts{u"waveInStop"});
    Deliver(1, 50);  // it runs on: this buffer is still the take's
    loop.RunPending();
    ExpectKept(26);
}

TEST_F(RecorderDrain, ClosesTheTakeAlsoWhenTheDeviceCannotBeReset) {
    StartTake(25);
    waves.in.results["Reset"] = WaveResult::kFailed;
    waves.in.results["Close"] = WaveResult::kFailed;
    Engine().WavStopRecording();
    EXPECT_EQ(takes.calls.back(), "finished");
    waves.in.queue.clear();
    Engine().WavCloseRecording();
    EXPECT_EQ(boxes.Texts(), (Texts{u"waveInReset", u"waveInReset at exit", u"waveInClose"}));
    EXPECT_TRUE(Engine().IsClosed());
}

TEST_F(RecorderDrain, ClosingAtExitKeepsTheTake) {
    StartTake(25);
    recorder.reset();
    EXPECT_EQ(takes.calls, (Strings{"prepare", "finished"}));
    EXPECT_EQ(writers.calls.back(), "close");
    EXPECT_FALSE(waves.in.open);
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(RecorderDrain, AVanishedInputEndsTheTakeAndKeepsIt) {
    StartTake(79);
    Backlog(kBufferBytes + 200, 900);
    waves.in.results["Stop"] = WaveResult::kNoDevice;
    waves.in.Lose(WaveLoss::kVanished);
    EXPECT_FALSE(Engine().IsActive());
    loop.RunPending();
    ExpectKept(81);
    EXPECT_EQ(listener.events, (Strings{"started", "stopped", "closed", "lost"}));
    EXPECT_EQ(boxes.Texts(), Texts{u"Sound input lost\nRecorded and kept: 00:04"});
}

TEST_F(RecorderDrain, AnInputLostWhileMonitoringStopsTheEngine) {
    StartTake(25);
    StopAndDrain();
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    Deliver(5);
    waves.in.Lose(WaveLoss::kVanished);
    loop.RunPending();
    EXPECT_TRUE(Engine().IsClosed());
    EXPECT_EQ(takes.calls, (Strings{"prepare", "finished"}));
    EXPECT_EQ(boxes.Texts(), Texts{u"Sound input lost"});
    // A loss that was not told before a new start is none of the new session's.
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    waves.in.Lose(WaveLoss::kStalled);
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    Deliver(1);
    EXPECT_TRUE(Engine().IsActive());
}

TEST_F(RecorderDrain, AnInputLostBehindABoxOfTheWriterEndsTheTakeAfterwards) {
    StartTake(25);
    writers.whileWriting = [&] {
        writers.whileWriting = nullptr;
        waves.in.results["Reset"] = WaveResult::kNoDevice;
        waves.in.Lose(WaveLoss::kVanished);
        EXPECT_NE(writers.calls.back(), "close");
    };
    Deliver(1);
    loop.RunPending();
    ExpectKept(26);  // although the device could not even be reset
    EXPECT_EQ(boxes.Texts(), Texts{u"Sound input lost\nRecorded and kept: 00:01"});
}

TEST_F(RecorderDrain, AnInputLostWhileTheTakeIsPreparedDiscardsIt) {
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    takes.whilePreparing = [&] {
        waves.in.Lose(WaveLoss::kVanished);
        loop.RunPending();
    };
    Engine().WavStartRecordSaving();
    EXPECT_FALSE(Engine().IsSavingPending());
    EXPECT_EQ(takes.calls, (Strings{"prepare", "discarded"}));
}

}  // namespace
}  // namespace orma::test
