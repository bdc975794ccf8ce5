#include <algorithm>
#include <chrono>
#include <thread>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "platform/portaudio/portaudio_wave_system.h"
#include "platform/posix/posix_event_loop.h"
#include "platform/wave_in_contract.h"
#include "platform/wave_out_user.h"
#include "support/pulse_server.h"
#include "support/sound_files.h"

namespace orma::test {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using Samples = std::vector<std::int16_t>;

constexpr std::uint32_t kBufferLength = 4410;  // 50 ms of mono

/// The adapter against a sound server that runs for this test alone.
class PortAudioOnPulse : public ::testing::Test {
  protected:
    void SetUp() override { ASSERT_TRUE(server_.IsRunning()) << "pulseaudio does not start"; }

    WaveResult Open(const Text& name = u"") {
        return system_.OpenInput(name, Pcm16(1, 44100), user_, device_);
    }

    /// Opens the input and lets it run until some buffers have come.
    void Begin() {
        ASSERT_EQ(Open(), WaveResult::kOk);
        user_.Begin(*device_);
        ASSERT_TRUE(Run([&] { return user_.order.size() > 5; }));
    }

    bool Run(const std::function<bool()>& condition, std::uint32_t limitMs = 10000) {
        return RunUntil(loop_, condition, limitMs);
    }

    /// Lets `ms` milliseconds pass.
    void Pass(std::uint32_t ms) {
        const auto end = steady_clock::now() + std::chrono::milliseconds(ms);
        ASSERT_TRUE(Run([&] { return steady_clock::now() >= end; }, ms + 10000));
    }

    PulseServer server_;
    TempFolder folder_;
    PosixEventLoop loop_;
    PortAudioWaveSystem system_{loop_};
    WaveInUser user_{kBufferLength};
    std::unique_ptr<WaveInDevice> device_;
};

TEST_F(PortAudioOnPulse, KeepsTheContractOfAWaveInput) {
    CheckWaveInContract({system_, [this](const auto& condition) { return Run(condition); }});
}

TEST_F(PortAudioOnPulse, ListsTheDefaultMicrophoneWithoutAWordOnStandardError) {
    ::testing::internal::CaptureStderr();
    const std::vector<WaveDeviceInfo> inputs = system_.Inputs();
    EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
    EXPECT_EQ(std::count_if(inputs.begin(), inputs.end(),
                            [](const WaveDeviceInfo& info) { return info.isDefault; }),
              1);
    // Opened to be looked at, a converter brings its codecs into the process for good.
    EXPECT_EQ(::dlopen("libavcodec.so.59", RTLD_NOW | RTLD_NOLOAD), nullptr);
    for (const WaveDeviceInfo& info : inputs)
        EXPECT_TRUE(info.name != u"a52" && info.name != u"speexrate") << ToUtf8(info.name);
    EXPECT_EQ(Open(u"no such microphone"), WaveResult::kNoDevice);
    for (const WaveDeviceInfo& info : inputs)
        if (info.isDefault) {
            EXPECT_EQ(Open(info.name), WaveResult::kOk);
        }
}

TEST_F(PortAudioOnPulse, AResetLeavesForTheNextOneWhatNoBufferCouldTake) {
    ASSERT_NO_FATAL_FAILURE(Begin());
    const std::size_t before = user_.heard.size();
    std::this_thread::sleep_for(2s);
    for (int round = 0; round < 5 && user_.recordedBytes.back() == kBufferLength; ++round) {
        const std::size_t returned = user_.order.size();
        ASSERT_EQ(device_->Reset(), WaveResult::kOk);
        ASSERT_TRUE(Run([&] { return user_.order.size() == returned + 16; }));
    }
    EXPECT_GT(user_.heard.size() - before, 2 * 44100 * 2 * 19 / 20)
        << "2 s came, sixteen buffers took 0.8 s at a time";
    EXPECT_EQ(device_->LostFrames(), 0u);
}

TEST_F(PortAudioOnPulse, TellsOnceThatItsServerEndedAndKeepsWhatWasHeard) {
    ASSERT_NO_FATAL_FAILURE(Begin());
    server_.Kill();
    ASSERT_TRUE(Run([&] { return !user_.losses.empty(); }));
    Pass(500);
    EXPECT_EQ(user_.losses, std::vector{WaveLoss::kVanished});
    const std::size_t returned = user_.order.size();
    user_.goRound = false;
    ASSERT_EQ(device_->Reset(), WaveResult::kOk);
    ASSERT_TRUE(Run([&] { return user_.order.size() == returned + 16; }));
}

TEST_F(PortAudioOnPulse, TellsOnceThatItsServerHangsAndDoesNotHangWithIt) {
    ASSERT_NO_FATAL_FAILURE(Begin());
    server_.Freeze();
    const auto frozen = steady_clock::now();
    ASSERT_TRUE(Run([&] { return !user_.losses.empty(); }));
    EXPECT_GE(steady_clock::now() - frozen, 2800ms);
    EXPECT_EQ(user_.losses, std::vector{WaveLoss::kStalled});

    const auto closing = steady_clock::now();
    user_.goRound = false;
    EXPECT_EQ(device_->Reset(), WaveResult::kOk);
    device_.reset();
    EXPECT_LT(steady_clock::now() - closing, 1s) << "closing waits for a hung server";
    EXPECT_EQ(Open(), WaveResult::kFailed);
    EXPECT_LT(steady_clock::now() - closing, 3s);

    server_.Thaw();
    ASSERT_TRUE(Run([&] { return Open() == WaveResult::kOk; }));
}

TEST_F(PortAudioOnPulse, PlaysToTheLastSampleAtItsVolume) {
    // What is played into the null sink is what its microphone hears.
    const Samples sound = Ramp(2205 * 40);
    ASSERT_NO_FATAL_FAILURE(Begin());
    ASSERT_EQ(system_.SetOutputVolume(32768, 65535), WaveResult::kOk);
    WaveOutUser listener(sound, 2205);
    std::unique_ptr<WaveOutDevice> output;
    ASSERT_EQ(system_.OpenOutput(u"", Pcm16(1, 44100), listener, output), WaveResult::kOk);
    ASSERT_EQ(output->Pause(), WaveResult::kOk);
    listener.Begin(*output);
    Pass(100);
    EXPECT_TRUE(listener.done.empty()) << "paused";
    ASSERT_EQ(output->Restart(), WaveResult::kOk);
    ASSERT_TRUE(Run([&] { return listener.done.size() == 40; }));
    listener.End();
    ASSERT_TRUE(Run([&] { return listener.done.size() == 41; }));
    EXPECT_EQ(output->Close(), WaveResult::kOk);
    Pass(500);
    Samples expected = sound;
    for (std::int16_t& sample : expected)
        sample = static_cast<std::int16_t>(sample * std::int64_t{32768} / 65535);
    const Samples heard = AsSamples(user_.heard);
    EXPECT_NE(std::search(heard.begin(), heard.end(), expected.begin(), expected.end()),
              heard.end());
    EXPECT_TRUE(listener.losses.empty());
}

TEST_F(PortAudioOnPulse, AResetOfTheOutputCutsOffWhatWasQueued) {
    ASSERT_NO_FATAL_FAILURE(Begin());
    const Samples sound = Ramp(22050 * 4);
    WaveOutUser first(sound, 22050);  // half a second each
    std::unique_ptr<WaveOutDevice> output;
    ASSERT_EQ(system_.OpenOutput(u"", Pcm16(1, 44100), first, output), WaveResult::kOk);
    first.Begin(*output);
    Pass(700);
    first.stopped = true;
    ASSERT_EQ(output->Reset(), WaveResult::kOk);
    EXPECT_LT(first.done.size(), 4U) << "no event from within a call";
    ASSERT_TRUE(Run([&] { return first.done.size() == 4; }));
    const std::size_t before = user_.heard.size();
    Pass(800);
    const Samples rest(AsSamples(ByteSpan(user_.heard).subspan(before)));
    EXPECT_TRUE(std::search(rest.begin(), rest.end(), sound.end() - 2205, sound.end()) ==
                rest.end())
        << "what was cut off is heard";
    first.End();
    ASSERT_TRUE(Run([&] { return first.done.back() == 4; })) << "it goes on with what follows";
}

TEST_F(PortAudioOnPulse, AnOutputTellsOnceThatItsServerEndedOrHangs) {
    for (const bool ended : {false, true}) {
        WaveOutUser listener(Ramp(44100 * 60), 2205);
        std::unique_ptr<WaveOutDevice> output;
        ASSERT_TRUE(Run([&] {
            return system_.OpenOutput(u"", Pcm16(1, 44100), listener, output) == WaveResult::kOk;
        }));
        listener.Begin(*output);
        ASSERT_TRUE(Run([&] { return listener.done.size() > 5; }));
        ended ? server_.Kill() : server_.Freeze();
        ASSERT_TRUE(Run([&] { return !listener.losses.empty(); }));
        Pass(500);
        EXPECT_EQ(listener.losses, std::vector{ended ? WaveLoss::kVanished : WaveLoss::kStalled});
        const auto closing = steady_clock::now();
        listener.stopped = true;
        const std::size_t done = listener.done.size();
        EXPECT_EQ(output->Reset(), WaveResult::kOk);
        ASSERT_TRUE(Run([&] { return listener.done.size() == done + 4; }));
        EXPECT_EQ(output->Close(), ended ? WaveResult::kOk : WaveResult::kFailed);
        EXPECT_LT(steady_clock::now() - closing, 3s) << "closing waits for a hung server";
        if (!ended) server_.Thaw();
    }
}

}  // namespace
}  // namespace orma::test
