#include <gtest/gtest.h>

#include "platform/simulated/simulated_card.h"
#include "platform/simulated/simulated_options.h"
#include "platform/simulated/simulated_recorder_waves.h"
#include "platform/virtual_audio/virtual_wave_system.h"
#include "platform/wave_in_contract.h"
#include "platform/wave_out_user.h"
#include "support/fake_event_loop.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

namespace orma::test {
namespace {

using Samples = std::vector<std::int16_t>;

TEST(SimulatedHardware, IsReadFromItsOption) {
    std::string error;
    const auto both = ParseSimulated(
        "simulated:recorder=a,b.wav,version=7,card=c.wav,pace=fast,fault=no-card,stall=3", error);
    ASSERT_TRUE(both) << error;
    EXPECT_EQ(both->recorder->file, u"a,b.wav");
    EXPECT_EQ(both->recorder->version, 7);
    EXPECT_EQ(both->card->file, u"c.wav");
    EXPECT_TRUE(both->card->fast);
    EXPECT_EQ(both->card->fault, SimulatedFault::kNoCard);
    EXPECT_EQ(both->card->stallSeconds, 3u);
    for (const char* wrong : {"simulated", "simulated:", "simulated:card=", "simulated:pace=fast",
                              "simulated:card=a,pace=slow", "simulated:card=a,fault=none",
                              "simulated:card=a,stall=x", "simulated:card=a,version=1", "other"})
        EXPECT_FALSE(ParseSimulated(wrong, error)) << wrong;
}

TEST(SimulatedCard, PlaysItsFileIntoTheRingInRealTime) {
    TempFolder folder;
    const Text file = folder.Path(u"in.wav");
    std::chrono::steady_clock::time_point now{};
    SimulatedCard card({.file = file, .stallSeconds = 10}, [&] { return now; });
    SpdifCard::Answer answer{};
    const auto send = [&](SpdifControl code, const Bytes& input = {0, 0}) {
        return card.Control(code, input, answer);
    };
    EXPECT_FALSE(card.Open()) << "no file";
    WriteSoundFile(file, 1, 48000, Samples{0x1234, -2});
    ASSERT_TRUE(card.Open());
    ASSERT_TRUE(send(SpdifControl::kReadRegister));
    EXPECT_NE(answer[0] & 8, 0);
    ASSERT_TRUE(send(SpdifControl::kWriteRegister));
    const auto block = SpdifRingBlock{}.Encode();
    ASSERT_TRUE(send(SpdifControl::kSetRing, Bytes(block.begin(), block.end())));
    ASSERT_TRUE(send(SpdifControl::kSelectInput, {2, 0}));
    EXPECT_EQ(card.SelectedInput(), 2);
    ASSERT_TRUE(send(SpdifControl::kReadRate));
    EXPECT_EQ(SpdifRateOfCode(answer[0]), 0u) << "it needs a moment to lock";
    ASSERT_TRUE(send(SpdifControl::kReadRate));
    EXPECT_EQ(SpdifRateOfCode(answer[0]), 48000u);

    EXPECT_EQ(card.WritePosition(), 0u);
    now += std::chrono::milliseconds(1);
    EXPECT_EQ(card.WritePosition(), 48u * 6);
    const Bytes begin(card.Ring().begin(), card.Ring().begin() + 12);
    EXPECT_EQ(begin, (Bytes{0, 0x34, 0x12, 0, 0x34, 0x12, 0, 0xFE, 0xFF, 0, 0xFE, 0xFF}));
    // Nobody reads: the ring fills up to one frame, the rest of the ten seconds waits.
    now += std::chrono::seconds(60);
    EXPECT_EQ(card.WritePosition(), SpdifCard::kRingBytes - 6);
    ASSERT_TRUE(send(SpdifControl::kStop));
    std::uint64_t total = SpdifCard::kRingBytes - 6;
    for (std::uint32_t read = card.WritePosition();;) {
        card.SetReadPosition(read);
        const std::uint32_t write = card.WritePosition();
        if (write == read) break;
        total += (write + SpdifCard::kRingBytes - read) % SpdifCard::kRingBytes;
        read = write;
    }
    EXPECT_EQ(total, 10u * 48000 * 6);
    card.Close();
    EXPECT_FALSE(send(SpdifControl::kReadRate));
}

TEST(SimulatedRecorder, HearsAt48000HzThroughItsGainAndPlaysThroughItsVolume) {
    TempFolder folder;
    FakeEventLoop loop;
    VirtualAudioOptions options;
    options.inputFile = folder.Path(u"in.wav");
    options.outputFile = folder.Path(u"out.wav");
    options.pace = Pace::kFast;
    WriteSoundFile(options.inputFile, 1, 48000, Samples(4800, 1000));
    SimulatedRecorder recorder({});
    SimulatedRecorderWaves waves(std::make_unique<VirtualWaveSystem>(loop, options), recorder);
    const Text name(SimulatedRecorder::kName);
    EXPECT_EQ(waves.Inputs().at(0).name, name);
    EXPECT_EQ(waves.Outputs().at(SimulatedRecorder::kOutput).name, name);
    EXPECT_EQ(recorder.OutputNames().at(SimulatedRecorder::kOutput), name);

    WaveInUser user(4800);
    std::unique_ptr<WaveInDevice> device;
    EXPECT_EQ(waves.OpenInput(name, Pcm16(1, 44100), user, device), WaveResult::kBadFormat);
    ASSERT_EQ(waves.OpenInput(name, Pcm16(1, 48000), user, device), WaveResult::kOk);
    std::array<std::uint8_t, 4> code{204};  // +6 dB
    ASSERT_EQ(
        recorder.Send(RecorderLine::kInput, kRecorderDriverMessage, RecorderMessage::kGain, code),
        WaveResult::kOk);
    user.onData = [&] {
        if (user.order.size() == 1) device.reset();
    };
    user.Begin(*device);
    loop.RunPending();
    EXPECT_EQ(AsSamples(user.heard), Samples(2400, 1995));

    code = {127};  // +6 dB
    ASSERT_EQ(recorder.Send(RecorderLine::kOutput, kRecorderDriverMessage, RecorderMessage::kVolume,
                            code),
              WaveResult::kOk);
    for (const Text& output : {name, Text()}) {
        WaveOutUser listener(Samples(4 * 480, -1000), 480);
        std::unique_ptr<WaveOutDevice> playing;
        ASSERT_EQ(waves.OpenOutput(output, Pcm16(1, 48000), listener, playing), WaveResult::kOk);
        listener.Begin(*playing);
        loop.RunPending();
        playing.reset();
        EXPECT_EQ(ReadSoundFile(options.outputFile), Samples(4 * 480, -1995));
    }
}

}  // namespace
}  // namespace orma::test
