#include "audio/engine/engine_fixture.h"

namespace orma::test {
namespace {

class RecorderStart : public RecorderTest {};

TEST_F(RecorderStart, OpensTheDeviceAndQueuesAllBuffersInOrder) {
    audio.stereo = true;
    Engine().SetInputDevice(u"Fake microphone");
    EXPECT_EQ(Engine().WavStartRecording(true), 1);  // while playback is active
    EXPECT_TRUE(waves.in.calls.empty());
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    EXPECT_TRUE(Engine().IsActive());
    EXPECT_EQ(waves.in.name, u"Fake microphone");
    EXPECT_EQ(waves.in.format, (WaveFormat{2, 44100, 176400, 4, 16}));
    ASSERT_EQ(waves.in.queue.size(), 16U);
    for (std::uint32_t index = 0; index < 16; ++index) {
        EXPECT_EQ(waves.in.queue[index]->user, index);
        EXPECT_EQ(waves.in.queue[index]->bufferLength, 2 * kBufferBytes);
    }
    EXPECT_EQ(waves.in.calls.back(), "Start");
    // 1 GiB: (1048576 - 1024) * 128 / (11025 * 2) s.
    EXPECT_EQ(Engine().Budget(), 6081U * 20U);
    EXPECT_EQ(Engine().WavStartRecording(), 1);
    EXPECT_EQ(waves.in.Count("OpenInput"), 1U);
    EXPECT_TRUE(boxes.shown.empty());
}

TEST_F(RecorderStart, RunsAt48000HzWithAnExternalRecorder) {
    audio.externalRecorder = true;
    audio.bitsPerSample = 24;  // of a file
    externalRecorder = &recorderControl;
    recorderControl.Load({.configuration = {77, 0x01020304, 9}});
    recorderControl.FindExternalRecorder();
    audio.resolutionShift = 1;
    InputProcessingSettings bell;
    bell.sets[0] = {{EqualizerBand{1000, 60, 10, 1}, {}, {}}, 1, u"bell", 0};
    bell.currentSetName = u"bell";
    input.Load(bell, 48000);
    const auto at48000 = input.Coefficients(0);
    input.Load(bell, 44100);
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    EXPECT_EQ(waves.in.format, (WaveFormat{1, 48000, 96000, 2, 16}));
    EXPECT_EQ(waves.in.queue.front()->bufferLength, 9600U);
    EXPECT_EQ(audio.sampleRate, 48000U);
    EXPECT_EQ(audio.bitsPerSample, 16);
    EXPECT_EQ(input.Coefficients(0), at48000);
    EXPECT_EQ(attached.sent, Strings{"53164 in 0 77 0 0 0 4 3 2 1 9"});
    // Its own display shows the level.
    Deliver(1, 3000);
    EXPECT_TRUE(listener.levels.empty());

    attached.result = WaveResult::kFailed;
    StopAndDrain();
    EXPECT_EQ(Engine().WavStartRecording(), 0);
    EXPECT_EQ(boxes.Texts(), Texts{u"waveinmessage"});
}

TEST_F(RecorderStart, RefusesBitRatesThatLayer2ForbidsBeforeOpening) {
    audio.mp2 = true;
    audio.stereo = true;
    audio.bitrate.SetMp2Bitrate(4, report);  // 80 kbit/s
    EXPECT_EQ(Engine().WavStartRecording(), 1);
    EXPECT_EQ(boxes.Texts(), Texts{u"Illegal bitrate"});
    EXPECT_TRUE(waves.in.calls.empty());
}

TEST_F(RecorderStart, SaysThatNoTimeIsLeftAndLeavesTheDeviceOpen) {
    audio.mp2 = true;
    storage.freeBytes = (1041ULL << 10) - 1;
    EXPECT_EQ(Engine().WavStartRecording(), 1);
    EXPECT_EQ(boxes.Texts(),
              Texts{u"You have no recording-\ntime left in your current\nproject. Please open\n"
                    u"another project on\nanother storage medium."});
    EXPECT_EQ(Engine().Budget(), 0U);
    EXPECT_FALSE(Engine().IsActive() || Engine().IsClosed());

    storage.freeBytes = 1041ULL << 10;
    storage.error = 5;  // unknown counts as none
    EXPECT_EQ(Engine().WavStartRecording(), 1);
    EXPECT_EQ(Engine().RecordingTimeLeft(), 0U);
    EXPECT_EQ(boxes.shown.size(), 2U);
    storage.error = 0;
    EXPECT_EQ(Engine().WavStartRecording(), 0);
    EXPECT_EQ(waves.in.Count("Close"), 2U);  // what had stayed open
    EXPECT_EQ(boxes.shown.size(), 2U);
    EXPECT_EQ(Engine().Budget(), 40U);
}

TEST_F(RecorderStart, PicksTheWriterByFormatAndDestinationAndTakesItBackAfterAPublication) {
    const auto started = [&](bool mp2, bool live) {
        audio.mp2 = mp2;
        takes.liveFtp = live;
        StopAndDrain();
        writers.calls.clear();
        EXPECT_EQ(Engine().WavStartRecording(), 0);
        return writers.calls;
    };
    EXPECT_EQ(started(true, false), Strings{"make 2"});
    EXPECT_EQ(started(false, true), (Strings{"make 4", "connect"}));
    EXPECT_EQ(started(true, true), (Strings{"make 5", "connect"}));
    EXPECT_EQ(started(false, false), Strings{"make 1"});
    EXPECT_EQ(started(false, false), Strings{});  // kept
    writers.SelectWriter(WriterKind::kBwfMp2File);
    Engine().WavStartRecordSaving();
    Deliver(1);
    EXPECT_EQ(writers.calls, (Strings{"make 9", "make 1", "open take_03"}));
}

TEST_F(RecorderStart, ReportsWhatFailsAndGoesOnWithoutThoseBuffersButNotWithoutAny) {
    waves.in.results["OpenInput#1"] = WaveResult::kBadFormat;
    EXPECT_EQ(Engine().WavStartRecording(), 1);
    EXPECT_TRUE(Engine().IsClosed());
    waves.in.results["Start#1"] = WaveResult::kFailed;
    EXPECT_EQ(Engine().WavStartRecording(), 1);
    EXPECT_FALSE(Engine().IsActive());
    waves.in.results["Prepare#18"] = WaveResult::kFailed;
    waves.in.results["Add#20"] = WaveResult::kFailed;
    EXPECT_EQ(Engine().WavStartRecording(), 0);
    EXPECT_EQ(boxes.Texts(),
              (Texts{u"waveInOpen", u"waveInStart", u"waveInPrepareHeader", u"waveInAddBuffer"}));
    EXPECT_EQ(waves.in.queue.size(), 14U);
    StopAndDrain();
    waves.in.results["Add"] = WaveResult::kFailed;
    EXPECT_EQ(Engine().WavStartRecording(), 1);
    EXPECT_EQ(waves.in.Count("Start"), 2U);
}

TEST_F(RecorderStart, ClearsTheFiltersOfTheLastSession) {
    ASSERT_EQ(Engine().WavStartRecording(), 0);
    Deliver(40, 8000);
    StopAndDrain();
    StartTake();
    Deliver(1, 0);
    // The first buffer after the start already was silence: no trace of the old offset is left.
    EXPECT_EQ(writers.blocks.back(), Bytes(kBufferBytes, 0));
}

}  // namespace
}  // namespace orma::test
