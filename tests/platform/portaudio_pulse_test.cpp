#include <algorithm>
#include <chrono>
#include <thread>

#include <dlfcn.h>
#include <gtest/gtest.h>

#include "platform/portaudio/portaudio_wave_system.h"
#include "platform/posix/posix_event_loop.h"
#include "platform/wave_in_contract.h"
#include "support/pulse_server.h"
#include "support/sound_files.h"

namespace orma::test {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;
using Samples = std::vector<std::int16_t>;

constexpr std::uint32_t kBufferLength = 4410;  // 50 ms of mono

/// Plays samples from four buffers that go round, as the playback engine does; what does not fill a
/// buffer is left out.
class WaveOutUser : public WaveOutEvents {
  public:
    WaveOutUser(Samples sound, std::uint32_t bufferSamples) : sound_(std::move(sound)) {
        for (std::uint32_t i = 0; i < headers_.size(); ++i) {
            memory_[i].resize(bufferSamples);
            headers_[i] = {reinterpret_cast<std::uint8_t*>(memory_[i].data()), bufferSamples * 2, 0,
                           i};
        }
    }

    void Begin(WaveOutDevice& device) {
        device_ = &device;
        for (WaveHeader& header : headers_) {
            ASSERT_EQ(device.Prepare(header), WaveResult::kOk);
            Write(header);
        }
    }

    /// Writes an empty buffer, number 4.
    void End() {
        ASSERT_EQ(device_->Prepare(marker_), WaveResult::kOk);
        ASSERT_EQ(device_->Write(marker_), WaveResult::kOk);
    }

    void OnWaveOutDone(WaveHeader& header) override {
        done.push_back(header.user);
        if (&header != &marker_) Write(header);
    }
    void OnWaveOutLost(WaveLoss reason) override { losses.push_back(reason); }

    std::vector<std::uint32_t> done;
    std::vector<WaveLoss> losses;
    bool stopped = false;

  private:
    void Write(WaveHeader& header) {
        Samples& memory = memory_[header.user];
        if (stopped || at_ + memory.size() > sound_.size()) return;
        std::copy_n(sound_.begin() + static_cast<std::ptrdiff_t>(at_), memory.size(),
                    memory.begin());
        at_ += memory.size();
        ASSERT_EQ(device_->Write(header), WaveResult::kOk);
    }

    Samples sound_;
    std::size_t at_ = 0;
    std::array<Samples, 4> memory_;
    std::array<WaveHeader, 4> headers_{};
    WaveHeader marker_{nullptr, 0, 0, 4};
    WaveOutDevice* device_ = nullptr;
};

/// The adapter against a sound server that runs for this test alone.
struct PortAudioOnPulse : ::testing::Test {
    PortAudioOnPulse() { EXPECT_TRUE(server_.IsRunning()) << "pulseaudio does not start"; }

    WaveResult Open(const Text& name = u"") {
        return system_.OpenInput(name, Pcm16(1, 44100), user_, device_);
    }

    /// Opens the input and lets it run until some buffers have come.
    void Begin() {
        ASSERT_EQ(Open(), WaveResult::kOk);
        user_.Begin(*device_);
        ASSERT_TRUE(Run([&] { return user_.order.size() > 5; }));
    }
    void Open(WaveOutUser& user) {
        ASSERT_TRUE(Run([&] {
            return system_.OpenOutput(u"", Pcm16(1, 44100), user, output_) == WaveResult::kOk;
        }));
    }

    bool Run(const std::function<bool()>& condition) { return RunUntil(loop_, condition); }

    /// Lets `ms` milliseconds pass.
    void Pass(std::uint32_t ms) {
        const auto end = steady_clock::now() + std::chrono::milliseconds(ms);
        ASSERT_TRUE(Run([&] { return steady_clock::now() >= end; }));
    }

    PulseServer server_;
    TempFolder folder_;
    PosixEventLoop loop_;
    PortAudioWaveSystem system_{loop_};
    WaveInUser user_{kBufferLength};
    std::unique_ptr<WaveInDevice> device_;
    std::unique_ptr<WaveOutDevice> output_;
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
    for (const WaveDeviceInfo& info : inputs) {
        EXPECT_TRUE(info.name != u"a52" && info.name != u"speexrate") << ToUtf8(info.name);
        EXPECT_TRUE(!info.isDefault || Open(info.name) == WaveResult::kOk);
    }
    EXPECT_EQ(Open(u"no such microphone"), WaveResult::kNoDevice);
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

TEST_F(PortAudioOnPulse, TellsOnceThatItsServerHangsOrEndsAndDoesNotHangWithIt) {
    for (const bool ended : {false, true}) {
        WaveInUser speaker(kBufferLength);
        WaveOutUser listener(Ramp(44100 * 60), 2205);
        ASSERT_TRUE(Run([&] {
            return system_.OpenInput(u"", Pcm16(1, 44100), speaker, device_) == WaveResult::kOk;
        }));
        Open(listener);
        speaker.Begin(*device_);
        listener.Begin(*output_);
        ASSERT_TRUE(Run([&] { return speaker.order.size() > 5 && listener.done.size() > 5; }));
        const auto begin = steady_clock::now();
        ended ? server_.Kill() : server_.Freeze();
        ASSERT_TRUE(Run([&] { return !speaker.losses.empty() && !listener.losses.empty(); }));
        EXPECT_TRUE(ended || steady_clock::now() - begin >= 2800ms);
        Pass(500);
        const std::vector once{ended ? WaveLoss::kVanished : WaveLoss::kStalled};
        EXPECT_EQ(speaker.losses, once);
        EXPECT_EQ(listener.losses, once);

        const auto closing = steady_clock::now();
        const std::size_t recorded = speaker.order.size();
        const std::size_t played = listener.done.size();
        speaker.goRound = false;
        listener.stopped = true;
        EXPECT_EQ(device_->Reset(), WaveResult::kOk);
        EXPECT_EQ(output_->Reset(), WaveResult::kOk);
        ASSERT_TRUE(Run([&] {
            return speaker.order.size() == recorded + 16 && listener.done.size() == played + 4;
        }));
        device_.reset();
        EXPECT_EQ(output_->Close(), ended ? WaveResult::kOk : WaveResult::kFailed);
        EXPECT_LT(steady_clock::now() - closing, 3s) << "closing waits for a hung server";
        if (ended) break;
        EXPECT_EQ(Open(), WaveResult::kFailed);
        EXPECT_LT(steady_clock::now() - closing, 5s);
        server_.Thaw();
    }
}

TEST_F(PortAudioOnPulse, PlaysAtItsVolumeAndAResetCutsOffWhatWasQueued) {
    // What is played into the null sink is what its microphone hears.
    ASSERT_NO_FATAL_FAILURE(Begin());
    ASSERT_EQ(system_.SetOutputVolume(32768, 65535), WaveResult::kOk);
    Samples sound = Ramp(16000 * 4);
    WaveOutUser listener(sound, 16000);  // a third of a second each
    Open(listener);
    ASSERT_EQ(output_->Pause(), WaveResult::kOk);
    listener.Begin(*output_);
    Pass(700);
    EXPECT_TRUE(listener.done.empty()) << "paused";
    ASSERT_EQ(output_->Restart(), WaveResult::kOk);
    ASSERT_TRUE(Run([&] { return listener.done.size() == 1; }));
    Pass(300);  // until it is heard
    listener.stopped = true;
    ASSERT_EQ(output_->Reset(), WaveResult::kOk);
    EXPECT_LT(listener.done.size(), 4U) << "no event from within a call";
    ASSERT_TRUE(Run([&] { return listener.done.size() == 4; }));
    Pass(800);
    for (std::int16_t& sample : sound)
        sample = static_cast<std::int16_t>(sample * std::int64_t{32768} / 65535);
    const Samples heard = AsSamples(user_.heard);
    EXPECT_FALSE(std::ranges::search(heard, std::span(sound).first(16000)).empty());
    EXPECT_TRUE(std::ranges::search(heard, std::span(sound).last(2205)).empty())
        << "what was cut off is heard";
    listener.End();
    ASSERT_TRUE(Run([&] { return listener.done.back() == 4; })) << "it goes on with what follows";
    EXPECT_TRUE(listener.losses.empty());
    EXPECT_EQ(output_->Close(), WaveResult::kOk);
}

}  // namespace
}  // namespace orma::test
