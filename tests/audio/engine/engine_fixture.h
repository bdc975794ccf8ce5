#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "audio/engine/recorder.h"
#include "support/fake_clock.h"
#include "support/fake_event_loop.h"
#include "support/fake_wave.h"
#include "support/quiet_ports.h"
#include "support/test_files.h"

namespace orma::test {

using Strings = std::vector<std::string>;
using Texts = std::vector<Text>;

/// Real files, but the free space that a test wants.
class RoomyStorage : public PosixStorage {
  public:
    SystemError FreeBytes(const Text&, std::uint64_t& bytes) override {
        bytes = freeBytes;
        return error;
    }

    std::uint64_t freeBytes = 1ULL << 30;
    SystemError error = 0;
};

/// Makes writers that only note what they are asked to do.
class LoggingWriters : public WriterSlot {
  public:
    using WriterSlot::WriterSlot;

    std::vector<std::string> calls;   // "make 1", "connect", "open take_03", "close"
    std::vector<Bytes> blocks;        // what WriteSamples got
    std::size_t healthyBlocks = ~0U;  // IsOpen is false from then on
    std::function<void()> whileWriting;
    std::function<void()> whileClosing;

  protected:
    std::unique_ptr<JStreamAudioWrite> Make(WriterKind kind) override {
        calls.push_back("make " + std::to_string(static_cast<int>(kind)));
        return std::make_unique<Writer>(*this);
    }

  private:
    struct Writer : JStreamAudioWrite {
        explicit Writer(LoggingWriters& writers) : log(writers) {}

        bool IsOpen() const override { return log.blocks.size() < log.healthyBlocks; }
        void Connect() override { log.calls.push_back("connect"); }
        void Open(const Text& name) override { log.calls.push_back("open " + ToUtf8(name)); }
        void Close() override {
            log.calls.push_back("close");
            if (log.whileClosing) log.whileClosing();
        }
        void WriteSamples(const void* pcm, std::uint32_t bytes) override {
            const auto* from = static_cast<const std::uint8_t*>(pcm);
            log.blocks.emplace_back(from, from + bytes);
            if (log.whileWriting) log.whileWriting();
        }

        LoggingWriters& log;
    };
};

class FakeTakes : public TakeKeeper {
  public:
    Text PrepareTake() override {
        calls.push_back("prepare");
        if (whilePreparing) whilePreparing();
        return u"take_03";
    }
    void TakeFinished() override { calls.push_back("finished"); }
    void TakeDiscarded(bool /*created*/) override { calls.push_back("discarded"); }
    Text StorageFolder() const override { return u"/recordings/"; }
    bool LiveFtp() const override { return liveFtp; }

    std::vector<std::string> calls;
    bool liveFtp = false;
    std::function<void()> whilePreparing;
};

class FakeListener : public RecorderListener {
  public:
    void OnLevel(std::uint8_t level) override { levels.push_back(level); }
    void OnSavingStarted() override { events.push_back("started"); }
    void OnSavingStopped() override { events.push_back("stopped"); }
    void OnClosed() override { events.push_back("closed"); }
    void OnInputLost(WaveLoss) override { events.push_back("lost"); }

    std::vector<std::string> events;
    std::vector<std::uint8_t> levels;
};

/// A recorder that is output 1 and notes the messages that it gets.
class FakeExternalRecorder : public ExternalRecorder {
  public:
    std::vector<Text> OutputNames() override { return names; }
    WaveResult Query(std::uint32_t output, const WaveFormat& format, std::uint32_t message,
                     RecorderMessage subCode, std::span<std::uint8_t> parameter) override {
        queriedOutput = output;
        queryFormat = format;
        if (message != 53164 || static_cast<int>(subCode) != 130) return WaveResult::kFailed;
        parameter[6] = 4;  // the version
        return result;
    }
    WaveResult Send(RecorderLine line, std::uint32_t message, RecorderMessage subCode,
                    std::span<std::uint8_t> parameter) override {
        std::string sentence = std::to_string(message) +
                               (line == RecorderLine::kInput ? " in " : " out ") +
                               std::to_string(static_cast<int>(subCode));
        for (const std::uint8_t byte : parameter)
            sentence += " " + std::to_string(byte);
        sent.push_back(sentence);
        return result;
    }

    std::vector<Text> names{u"Loudspeaker", u"MAYCOM One"};
    std::vector<std::string> sent;  // "53164 in 40 200 0 0 0"
    std::uint32_t queriedOutput = 0;
    WaveFormat queryFormat;
    WaveResult result = WaveResult::kOk;
};

/// A recorder on fakes: mono WAV at 44100 Hz, buffers of 4410 bytes, twenty a second.
class RecorderTest : public testing::Test {
  protected:
    static constexpr std::uint32_t kBufferBytes = 4410;

    Recorder& Engine() {
        if (!recorder)
            recorder = std::make_unique<Recorder>(
                RecorderServices{waves, clock, storage, report, audio, buffers, input, writers,
                                 sheet, takes, listener, externalRecorder, spdif});
        return *recorder;
    }

    /// A take of which `periods` were saved so far; the buffer that began it is not in it.
    void StartTake(std::size_t periods = 0) {
        ASSERT_EQ(Engine().WavStartRecording(), 0);
        Engine().WavStartRecordSaving();
        Deliver(1, 0);
        ASSERT_TRUE(Engine().IsSaving());
        Deliver(periods);
    }

    void Deliver(std::size_t count, std::int16_t sample = 1000) {
        for (std::size_t n = 0; n < count; ++n)
            ASSERT_TRUE(waves.in.DeliverValue(sample));
    }

    void StopAndDrain() {
        Engine().WavStopRecording();
        loop.RunPending();
    }

    static std::int16_t First(const Bytes& block) { return LoadLe<std::int16_t>(block.data()); }

    /// The take is over, whole, and has so many periods.
    void ExpectKept(std::uint32_t periods) {
        EXPECT_EQ(writers.blocks.size(), periods);
        EXPECT_EQ(sheet.rangeEnd, periods);
        EXPECT_EQ(writers.calls.back(), "close");
        EXPECT_EQ(takes.calls, (Strings{"prepare", "finished"}));
        EXPECT_TRUE(Engine().IsClosed());
    }

    FakeEventLoop loop;
    FakeWaveSystem waves{loop};
    FakeClock clock;
    RoomyStorage storage;
    FakeBoxes boxes;
    ErrorReporter report{boxes, storage};
    AudioState audio;
    CaptureBuffers buffers;
    NoHeadset headset;
    InputProcessing input{waves, headset};
    Mp2Pipeline encoder{audio, report};
    WriterContext context{.files = {storage, report}, .audio = audio, .encoder = encoder};
    LoggingWriters writers{context};
    LevelSheet sheet;
    FakeTakes takes;
    FakeListener listener;
    FakeExternalRecorder attached;
    ExternalRecorderControl recorderControl{&attached, report};
    ExternalRecorderControl* externalRecorder = nullptr;
    SpdifInput* spdif = nullptr;
    std::unique_ptr<Recorder> recorder;
};

}  // namespace orma::test
