// What is heard of a take with cuts, sample by sample, against models that know nothing of buffers,
// queues and events.

#include <algorithm>
#include <cstring>
#include <random>

#include <gtest/gtest.h>

#include "audio/engine/player.h"
#include "audio/files/buffer_period.h"
#include "audio/files/layer2_encoder.h"
#include "audio/files/playback_converter.h"
#include "audio/files/wav_bytes.h"
#include "platform/virtual_audio/virtual_wave_system.h"
#include "support/fake_event_loop.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

using Samples = std::vector<std::int16_t>;

Samples AsSamples(ByteSpan bytes) {
    Samples samples(bytes.size() / 2);
    if (!samples.empty()) std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    return samples;
}

struct Stretch {
    std::uint32_t begin;
    std::uint32_t end;
};

/// What is left of [from, end) when each period is looked at by itself.
std::vector<Stretch> Kept(const std::vector<RemovedRange>& cuts, std::uint32_t from,
                          std::uint32_t end) {
    std::vector<Stretch> kept;
    for (std::uint32_t period = from; period < end; ++period) {
        const bool cut = std::any_of(cuts.begin(), cuts.end(), [&](const RemovedRange& one) {
            return one.begin <= period && period < one.end;
        });
        if (cut) continue;
        if (kept.empty() || kept.back().end != period) kept.push_back({period, period});
        ++kept.back().end;
    }
    return kept;
}

VirtualAudioOptions OutputInto(const Text& path) {
    VirtualAudioOptions options;
    options.outputFile = path;
    options.pace = Pace::kFast;
    return options;
}

/// A take, and a player whose output goes into a file as fast as it can.
class PlaybackProperty : public ::testing::Test {
  protected:
    /// Plays [from, end of range) and returns the samples of the output's file.
    Samples Play(std::uint16_t channels, std::uint32_t from) {
        player_.WavRestartPlaying(static_cast<std::int32_t>(from));
        EXPECT_TRUE(player_.StartPlaying(channels));
        loop_.RunPending();
        EXPECT_TRUE(player_.IsClosed() && files_.boxes.Texts().empty());
        const Bytes file = ReadFileBytes(files_.folder.Path(u"out.wav"));
        return AsSamples(ByteSpan(file).subspan(44));
    }

    /// A few cuts of any length, touching, overlapping, empty, sorted or not.
    void MakeCuts() {
        sheet_.cuts.clear();
        for (std::uint32_t left = Random(6); left > 0; --left) {
            const std::uint32_t begin = Random(length_);
            const std::uint32_t end = std::min(begin + Random(1 + length_ / 4), length_);
            sheet_.cuts.push_back({begin, end, 0});
            if (Random(3) == 0) sheet_.cuts.push_back({end, std::min(end + 1, length_), 0});
        }
    }

    std::uint32_t Random(std::uint32_t below) {
        return static_cast<std::uint32_t>(random_()) % below;
    }

    /// The first place where two sounds differ, in words; empty when they are equal.
    static std::string Difference(const Samples& heard, const Samples& model) {
        if (heard.size() != model.size())
            return Format("%zu samples heard, %zu expected", heard.size(), model.size());
        const auto [at, expected] = std::mismatch(heard.begin(), heard.end(), model.begin());
        if (at == heard.end()) return {};
        return Format("sample %td of %zu is %d, not %d", at - heard.begin(), heard.size(), *at,
                      *expected);
    }

    TestFiles files_;
    std::mt19937 random_{20};
    AudioState audio_;
    Mp2Decoder decoder_{audio_, files_.storage, u""};
    FakeEventLoop loop_;
    VirtualWaveSystem waves_{loop_, OutputInto(files_.folder.Path(u"out.wav"))};
    CaptureBuffers buffers_;
    Text path_ = files_.folder.Path(u"take");
    std::uint32_t length_ = 0;
    LevelSheet sheet_;
    std::int32_t currentCut_ = -1;
    TransportState transport_ = TransportState::kPlaying;
    PlayerListener listener_;
    Player player_{{.waves = waves_,
                    .readers = {files_.services, audio_, decoder_},
                    .buffers = buffers_,
                    .recording = {path_, length_, sheet_, currentCut_},
                    .transport = transport_,
                    .listener = listener_}};
};

/// Interleaved samples on the output's channels: mono on both, of stereo the left on one.
Samples OnChannels(const Samples& in, unsigned from, unsigned to) {
    if (from == to) return in;
    Samples out;
    for (std::size_t i = 0; i < in.size(); i += from)
        out.insert(out.end(), to, in[i]);
    return out;
}

/// Samples from `in` on converted in one go; silence behind the end.
Samples Converted(Samples in, std::uint32_t rate, std::uint32_t outputRate, unsigned channels,
                  std::size_t count) {
    PlaybackConverter converter;
    converter.Start(rate, outputRate);
    in.resize(std::max(in.size(), converter.InputNeeded(count) * channels));
    Samples out(count * channels);
    (void)converter.Convert(in, channels, out);
    return out;
}

TEST_F(PlaybackProperty, WavTakesOfEveryKindSoundLikeTheModel) {
    for (const unsigned bits : {16U, 24U, 32U})
        for (const unsigned channels : {1U, 2U})
            for (const std::uint32_t rate : {44100U, 48000U, 88200U, 96000U})
                for (const bool recorder : {false, true}) {
                    audio_.externalRecorder = recorder;
                    audio_.resolutionShift = Random(3);
                    const std::uint32_t perSecond = PeriodsPerSecond(audio_.resolutionShift);
                    const std::uint32_t periodFrames = rate / perSecond;
                    length_ = 4 + Random(2 * perSecond);
                    // Up to a period more or less than the level file says.
                    const std::size_t frames = std::size_t{length_} * periodFrames - periodFrames +
                                               Random(2 * periodFrames);
                    Bytes data(frames * channels * bits / 8);
                    for (std::uint8_t& byte : data)
                        byte = static_cast<std::uint8_t>(random_());
                    const unsigned align = channels * bits / 8;
                    WriteFileBytes(path_, WavBytes({.channels = channels,
                                                    .sampleRate = rate,
                                                    .bits = bits,
                                                    .blockAlign = align},
                                                   data));
                    Samples sound;  // the upper 16 bits
                    for (std::size_t at = bits / 8 - 2; at + 2 <= data.size(); at += bits / 8)
                        sound.push_back(LoadLe<std::int16_t>(&data[at]));
                    MakeCuts();
                    const std::uint32_t from = Random(3) == 0 ? 0 : Random(length_);
                    const std::uint32_t end = Random(2) == 0 ? 0 : from + Random(length_);
                    player_.SetRange({from, end});
                    const std::uint32_t stop = end == 0 ? length_ : std::min(end, length_);

                    const std::uint32_t outputRate = recorder ? 48000 : 44100;
                    const auto outputs = static_cast<std::uint16_t>(1 + Random(2));
                    const Samples mapped = OnChannels(sound, channels, outputs);
                    Samples model;
                    for (const Stretch& stretch : Kept(sheet_.cuts, from, stop)) {
                        const std::size_t begin = std::min(
                            std::size_t{stretch.begin} * periodFrames * outputs, mapped.size());
                        const Samples rest(mapped.begin() + static_cast<std::ptrdiff_t>(begin),
                                           mapped.end());
                        const Samples part = Converted(
                            rest, rate, outputRate, outputs,
                            std::size_t{stretch.end - stretch.begin} * outputRate / perSecond);
                        model.insert(model.end(), part.begin(), part.end());
                    }
                    EXPECT_EQ(Difference(Play(outputs, from), model), "")
                        << bits << " bit, " << channels << " channels, " << rate << " Hz to "
                        << outputRate << " Hz, shift " << audio_.resolutionShift << ", from "
                        << from << " to " << stop << " of " << length_;
                }
}

/// Decodes the frames of a file in any order, as a decoder that is not restarted between them.
class FrameModel {
  public:
    FrameModel(AudioState& audio, Storage& storage, const Bytes& file, unsigned channels)
        : decoder_(audio, storage, u""),
          frameBytes_(audio.bitrate.FrameBytes()),
          file_(file),
          channels_(channels) {}

    void GoTo(std::size_t frame) { next_ = frame; }

    /// Goes on until `count` samples per channel are there.
    void DecodeUpTo(std::size_t count) {
        while (sound.size() < count * channels_) {
            const std::size_t at = next_++ * frameBytes_;
            if (at >= file_.size()) {
                sound.resize(sound.size() + std::size_t{kMp2FrameSamples} * channels_);
                continue;
            }
            const Mp2Header header{{file_[at], file_[at + 1], file_[at + 2], file_[at + 3]}};
            if (!decoder_.IsActive()) decoder_.Mp2DecoderStart(header);
            const std::span<std::uint8_t> space = decoder_.FrameSpace();
            std::copy_n(&file_[at + 4], frameBytes_ - 4, space.begin());
            std::copy_n(header.bytes.begin(), 4, space.end() - 4);  // all headers are alike
            Samples frame(2 * kMp2FrameSamples);
            unsigned channels = 0;
            ASSERT_EQ(decoder_.Mp2DecodeFrame(frame, channels), kMp2FrameSamples);
            frame.resize(std::size_t{kMp2FrameSamples} * channels);
            const Samples mapped = OnChannels(frame, channels, channels_);
            sound.insert(sound.end(), mapped.begin(), mapped.end());
        }
    }

    Samples sound;

  private:
    Mp2Decoder decoder_;
    std::size_t frameBytes_;
    const Bytes& file_;
    unsigned channels_;
    std::size_t next_ = 0;
};

TEST_F(PlaybackProperty, Mp2TakesSoundLikeTheModel) {
    struct Format {
        std::uint32_t bitrateIndex;
        bool stereo;
    };
    const Format formats[] = {{0, false}, {3, false}, {9, false}, {3, true}, {7, true}, {11, true}};
    audio_.mp2 = true;
    for (int run = 0; run < 60; ++run) {
        const Format& format = formats[run % std::size(formats)];
        audio_.stereo = format.stereo;
        audio_.bitrate.SetMp2Bitrate(format.bitrateIndex, files_.services.report);
        audio_.externalRecorder = run % 4 == 3;
        audio_.resolutionShift = Random(3);
        if (!audio_.bitrate.IsLegalFor(audio_.stereo)) continue;
        const std::uint32_t perSecond = PeriodsPerSecond(audio_.resolutionShift);
        const auto encoder = Layer2Encoder::Create(audio_.bitrate.BitsPerSecond(), audio_.stereo);
        ASSERT_TRUE(encoder);
        const std::size_t frames = 30 + Random(60);
        Bytes file;
        for (std::size_t frame = 0; frame < frames; ++frame) {
            Samples noise(2 * kMp2FrameSamples);
            for (std::int16_t& sample : noise)
                sample = static_cast<std::int16_t>(static_cast<std::int16_t>(random_()) / 4);
            const ByteSpan bytes = encoder->EncodeFrame(&noise[0], &noise[kMp2FrameSamples]);
            file.insert(file.end(), bytes.begin(), bytes.end());
        }
        WriteFileBytes(path_, file);
        length_ = static_cast<std::uint32_t>(frames * kMp2FrameSamples * perSecond / 48000);
        MakeCuts();
        const std::uint32_t from = Random(3) == 0 ? 0 : Random(length_);
        player_.SetRange({});

        const auto outputs = static_cast<std::uint16_t>(1 + Random(2));
        const std::uint32_t outputRate = audio_.externalRecorder ? 48000 : 44100;
        PlaybackConverter converter;
        converter.Start(48000, outputRate);
        FrameModel model(audio_, files_.storage, file, outputs);
        std::size_t count = 0;  // output samples per channel
        for (const Stretch& stretch : Kept(sheet_.cuts, from, length_)) {
            model.GoTo(Mp2FrameOfPeriod(stretch.begin, audio_.resolutionShift));
            count += std::size_t{stretch.end - stretch.begin} * outputRate / perSecond;
            model.DecodeUpTo(converter.InputNeeded(count));
        }
        const Samples expected = Converted(model.sound, 48000, outputRate, outputs, count);
        std::string cuts;
        for (const RemovedRange& cut : sheet_.cuts)
            cuts += orma::Format(" %u-%u", cut.begin, cut.end);
        EXPECT_EQ(Difference(Play(outputs, from), expected), "")
            << audio_.bitrate.BitsPerSecond() << " bit/s, " << audio_.Channels() << " channels to "
            << outputs << " at " << outputRate << " Hz, shift " << audio_.resolutionShift
            << ", from " << from << " of " << length_ << ", " << frames << " frames, cuts" << cuts;
    }
}

}  // namespace
}  // namespace orma::test
