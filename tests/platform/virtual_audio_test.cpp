#include <algorithm>
#include <chrono>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

#include "platform/posix/posix_event_loop.h"
#include "platform/virtual_audio/virtual_audio_options.h"
#include "platform/virtual_audio/virtual_wave_system.h"
#include "platform/wave_in_contract.h"
#include "platform/wave_out_user.h"
#include "support/fake_event_loop.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

namespace orma::test {
namespace {

using namespace std::chrono_literals;
using Samples = std::vector<std::int16_t>;

constexpr std::uint32_t kBufferFrames = 441;  // 10 ms at 44100 Hz

/// A loop and a clock that only a test moves, and the devices on them.
class VirtualAudio : public ::testing::Test {
  protected:
    VirtualWaveSystem& System(Pace pace) {
        options_.pace = pace;
        options_.inputFile = input_;
        options_.outputFile = output_;
        system_ = std::make_unique<VirtualWaveSystem>(loop_, options_, [this] { return now_; });
        return *system_;
    }

    std::unique_ptr<WaveInDevice> Open(Pace pace, WaveInEvents& user) {
        std::unique_ptr<WaveInDevice> device;
        EXPECT_EQ(System(pace).OpenInput(u"", Pcm16(1, 44100), user, device), WaveResult::kOk);
        return device;
    }

    void Pass(int ms) {
        for (; ms > 0; --ms) {
            now_ += 1ms;
            loop_.Advance(1);
        }
    }

    /// What the fast pace hears of one channel in buffers of so many frames.
    Samples HearFast(std::size_t buffers, std::uint32_t bufferFrames) {
        WaveInUser user(bufferFrames * 2);
        const auto device = Open(Pace::kFast, user);
        user.onData = [&] {
            if (user.order.size() == buffers) (void)device->Stop();
        };
        user.Begin(*device);
        loop_.RunPending();
        EXPECT_EQ(user.order.size(), buffers);
        return AsSamples(user.heard);
    }

    TempFolder folder_;
    Text input_ = folder_.Path(u"in.wav");
    Text output_;
    VirtualAudioOptions options_;
    FakeEventLoop loop_;
    std::chrono::steady_clock::time_point now_;
    std::unique_ptr<VirtualWaveSystem> system_;
};

TEST_F(VirtualAudio, AnotherRateIsConvertedInPitchAndLength) {
    const auto sine = [](std::size_t frames, double hz) {  // of 441 Hz
        Samples samples(frames);
        for (std::size_t i = 0; i < frames; ++i)
            samples[i] = static_cast<std::int16_t>(std::lrint(
                10000 * std::sin(2 * std::numbers::pi * 441 * static_cast<double>(i) / hz)));
        return samples;
    };
    WriteSoundFile(input_, 1, 22050, sine(22050, 22050));
    const Samples heard = HearFast(120, kBufferFrames);
    const Samples ideal = sine(44100, 44100);
    int worst = 0;
    for (std::size_t i = 4410; i < 39690; ++i)
        worst = std::max(worst, std::abs(heard[i] - ideal[i]));
    EXPECT_LT(worst, 10) << "60 dB below the sine";
    EXPECT_TRUE(std::all_of(heard.begin() + 44200, heard.end(), [](auto s) { return s == 0; }));
    EXPECT_EQ(HearFast(40, 3 * kBufferFrames), heard) << "whatever the buffers' length";
}

TEST_F(VirtualAudio, InRealTimeABufferComesWhenItIsDueAndAStallLosesNothing) {
    const Samples sound = Ramp(5 * 44100);
    WriteSoundFile(input_, 1, 44100, sound);
    WaveInUser user(2205 * 2);  // 50 ms
    const auto device = Open(Pace::kReal, user);
    user.Begin(*device);
    Pass(49);
    EXPECT_EQ(user.order.size(), 0u);
    Pass(11);
    EXPECT_EQ(user.order.size(), 1u);
    now_ += 3s;  // the loop does not run meanwhile
    Pass(100);
    EXPECT_EQ(user.order.size(), 63u);
    EXPECT_TRUE(std::equal(user.heard.begin(), user.heard.end(),
                           reinterpret_cast<const std::uint8_t*>(sound.data())));
    Pass(600'000 - 3160 + 10);
    EXPECT_EQ(user.order.size(), 12000u) << "ten minutes without drift";
}

TEST_F(VirtualAudio, AVanishingMicrophoneTellsItOnceAndKeepsWhatItHeard) {
    const Samples sound = Ramp(44100);
    WriteSoundFile(input_, 1, 44100, sound);
    options_.vanishAfterFrames = 1000;  // in the third buffer
    for (const Pace pace : {Pace::kFast, Pace::kReal}) {
        WaveInUser user(kBufferFrames * 2);
        const auto device = Open(pace, user);
        user.Begin(*device);
        Pass(200);
        EXPECT_EQ(user.losses, std::vector{WaveLoss::kVanished});
        EXPECT_EQ(user.order.size(), 2u);
        user.goRound = false;
        ASSERT_EQ(device->Reset(), WaveResult::kOk);
        Pass(1);
        EXPECT_EQ(user.order.size(), 18u);
        EXPECT_EQ(AsSamples(user.heard), Samples(sound.begin(), sound.begin() + 1000));
        EXPECT_EQ(device->Start(), WaveResult::kNoDevice);
    }
}

TEST_F(VirtualAudio, KeepsTheContractOfAWaveInputAtBothPaces) {
    WriteSoundFile(input_, 1, 44100, Ramp(44100));
    PosixEventLoop loop;
    options_.inputFile = input_;
    options_.pace = Pace::kFast;
    VirtualWaveSystem fast(loop, options_);
    CheckWaveInContract({fast, [&](const auto& condition) { return RunUntil(loop, condition); }});
    CheckWaveInContract({System(Pace::kReal), [&](const auto& condition) {
                             for (int ms = 0; ms < 10000 && !condition(); ++ms)
                                 Pass(1);
                             return condition();
                         }});
}

TEST_F(VirtualAudio, UnreadableInputsAndImpossibleOutputsAreNoDevice) {
    WriteFileBytes(input_, AsBytes("this is not sound"));
    WaveInUser user(882);
    std::unique_ptr<WaveInDevice> device;
    EXPECT_EQ(System(Pace::kFast).OpenInput(u"", Pcm16(1, 44100), user, device),
              WaveResult::kNoDevice);
    EXPECT_FALSE(device);
    EXPECT_TRUE(system_->Inputs().empty());
    WriteSoundFile(input_, 2, 48000, Ramp(2));
    EXPECT_EQ(system_->Inputs().at(0).channels, 2);
    EXPECT_EQ(system_->OpenInput(u"elsewhere", Pcm16(1, 44100), user, device),
              WaveResult::kNoDevice);
    WaveFormat deep = Pcm16(1, 44100);
    deep.bitsPerSample = 24;
    EXPECT_EQ(system_->OpenInput(u"", deep, user, device), WaveResult::kBadFormat);
    output_ = folder_.Path(u"missing/out.wav");
    WaveOutUser listener({}, 2);
    std::unique_ptr<WaveOutDevice> output;
    EXPECT_EQ(System(Pace::kFast).OpenOutput(u"", Pcm16(2, 44100), listener, output),
              WaveResult::kNoDevice);
}

TEST_F(VirtualAudio, APauseHoldsTheSoundAndAResetCutsIt) {
    output_ = folder_.Path(u"out.wav");
    const Samples sound = Ramp(kBufferFrames * 20);
    WaveOutUser user(sound, kBufferFrames);
    std::unique_ptr<WaveOutDevice> device;
    ASSERT_EQ(System(Pace::kReal).OpenOutput(u"", Pcm16(1, 44100), user, device), WaveResult::kOk);
    user.Begin(*device);
    Pass(25);
    EXPECT_EQ(user.done.size(), 2u);
    ASSERT_EQ(device->Pause(), WaveResult::kOk);
    Pass(100);
    EXPECT_EQ(user.done.size(), 2u);
    ASSERT_EQ(device->Restart(), WaveResult::kOk);
    Pass(10);
    EXPECT_EQ(user.done.size(), 3u);

    user.stopped = true;
    ASSERT_EQ(device->Reset(), WaveResult::kOk);
    EXPECT_EQ(user.done.size(), 3u) << "no event from within a call";
    Pass(100);
    EXPECT_EQ(user.done.size(), 7u);
    EXPECT_EQ(ReadSoundFile(output_), Samples(sound.begin(), sound.begin() + 35 * 441 / 10));
}

TEST(VirtualAudioOptions, AreReadFromTheirCommandLineFormOrRefused) {
    std::string error;
    const auto all = ParseVirtualAudio(
        "virtual:in=a, b.wav,out=/tmp/c.wav,pace=fast,vanish=44100,count=n", error);
    ASSERT_TRUE(all) << error;
    EXPECT_EQ(all->inputFile, u"a, b.wav");
    EXPECT_EQ(all->outputFile, u"/tmp/c.wav");
    EXPECT_EQ(all->pace, Pace::kFast);
    EXPECT_EQ(all->vanishAfterFrames, 44100u);

    for (const char* bad :
         {"", "portaudio", "virtual:", "virtual:in=", "virtual:in=a,pace=slow",
          "virtual:in=a,pace=0", "virtual:pace=fast", "virtual:in=a,in=b", "virtual:in=a,vanish=-1",
          "virtual:in=a,vanish=1x", "virtual:speed=2", "virtual:in=a,out=a"}) {
        error.clear();
        EXPECT_FALSE(ParseVirtualAudio(bad, error)) << bad;
        EXPECT_FALSE(error.empty()) << bad;
    }
}

}  // namespace
}  // namespace orma::test
