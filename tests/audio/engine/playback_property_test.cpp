// What is heard of a take with cuts, sample by sample, against models that know nothing of buffers,
// queues and events.

#include <algorithm>
#include <cmath>
#include <map>
#include <numbers>
#include <numeric>
#include <random>

#include <gtest/gtest.h>
#include <mad.h>

#include "audio/engine/player.h"
#include "audio/files/buffer_period.h"
#include "audio/files/layer2_encoder.h"
#include "audio/files/wav_bytes.h"
#include "platform/virtual_audio/virtual_wave_system.h"
#include "support/fake_event_loop.h"
#include "support/sound_files.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

using Samples = std::vector<std::int16_t>;

/// What is left of [from, end) when each period is looked at by itself.
std::vector<PeriodRange> Kept(const std::vector<RemovedRange>& cuts, std::uint32_t from,
                              std::uint32_t end) {
    std::vector<PeriodRange> kept;
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

/// Another rate's samples by the definition: output n lies n * I / O samples into the sound, and is
/// the sum of a window of samples, each with its weight, which add up to 65536 for each phase.
class RateModel {
  public:
    RateModel(std::uint32_t rate, std::uint32_t outputRate)
        : in_(rate / std::gcd(rate, outputRate)), out_(outputRate / std::gcd(rate, outputRate)) {
        if (in_ == out_) return;
        const double stretch = std::max(1.0, static_cast<double>(in_) / static_cast<double>(out_));
        const auto reach = static_cast<std::size_t>(std::ceil(8 * stretch));
        for (std::size_t phase = 0; phase < out_; ++phase) {
            const double place = static_cast<double>(reach - 1) +
                                 static_cast<double>(phase) / static_cast<double>(out_);
            std::vector<double> weights;
            for (std::size_t tap = 0; tap < 2 * reach; ++tap) {
                const double t = (static_cast<double>(tap) - place) / stretch;
                const double x = std::numbers::pi * t;
                const double window = std::abs(t) < 8 ? std::pow(std::cos(x / 16), 2) : 0;
                weights.push_back(x == 0 ? 1 : std::sin(x) / x * window);
            }
            const double sum = std::accumulate(weights.begin(), weights.end(), 0.0);
            std::vector<std::int32_t>& row = rows_.emplace_back();
            for (const double weight : weights)
                row.push_back(static_cast<std::int32_t>(std::lround(weight / sum * 65536)));
            row[static_cast<std::size_t>(std::lround(place))] +=
                65536 - std::accumulate(row.begin(), row.end(), 0);
        }
    }

    /// The sample per channel at which output n's window begins, and the one behind its end.
    [[nodiscard]] std::size_t Begin(std::size_t n) const { return n * in_ / out_; }
    [[nodiscard]] std::size_t End(std::size_t n) const {
        return Begin(n) + (rows_.empty() ? 1 : rows_.front().size());
    }

    /// `count` samples per channel; silence behind the end of `in`.
    [[nodiscard]] Samples Convert(const Samples& in, unsigned channels, std::size_t count) const {
        Samples out;
        for (std::size_t n = 0; n < count; ++n)
            for (unsigned channel = 0; channel < channels; ++channel) {
                const auto at = [&](std::size_t sample) {
                    const std::size_t place = sample * channels + channel;
                    return std::int64_t{place < in.size() ? in[place] : std::int16_t{0}};
                };
                if (rows_.empty()) {
                    out.push_back(static_cast<std::int16_t>(at(n)));
                    continue;
                }
                std::int64_t sum = 32768;
                for (std::size_t tap = 0; tap < rows_.front().size(); ++tap)
                    sum += rows_[n * in_ % out_][tap] * at(Begin(n) + tap);
                out.push_back(
                    static_cast<std::int16_t>(std::clamp<std::int64_t>(sum >> 16, -32768, 32767)));
            }
        return out;
    }

  private:
    std::size_t in_;
    std::size_t out_;
    std::vector<std::vector<std::int32_t>> rows_;  // of each phase; none: the samples are copied
};

/// A take, and a player whose output goes into a file as fast as it can.
class PlaybackProperty : public ::testing::Test {
  protected:
    /// Plays [from, end of range) and returns the samples of the output's file.
    Samples Play(std::uint16_t channels, std::uint32_t from) {
        player_.WavRestartPlaying(static_cast<std::int32_t>(from));
        EXPECT_TRUE(player_.StartPlaying(channels));
        loop_.RunPending();
        EXPECT_TRUE(player_.IsClosed() && files_.boxes.Texts().empty());
        return ReadSoundFile(files_.folder.Path(u"out.wav"));
    }

    /// A few cuts of any length, touching, overlapping, empty, sorted or not.
    void MakeCuts() {
        sheet_.cuts.clear();
        for (std::uint32_t left = Random(6); left > 0; --left) {
            const std::uint32_t begin = Random(length_);
            const std::uint32_t end = std::min(begin + Random(1 + length_ / 4), length_);
            sheet_.cuts.push_back({begin, end, 0});
            if (Random(3) == 0) sheet_.cuts.push_back({end, std::min(end + 1, length_), 0});
            if (Random(3) == 0) sheet_.cuts.push_back({begin, begin, 0});
        }
    }

    [[nodiscard]] std::string Cuts() const {
        std::string cuts = ", cuts";
        for (const RemovedRange& cut : sheet_.cuts)
            cuts += Format(" %u-%u", cut.begin, cut.end);
        return cuts;
    }

    std::uint32_t Random(std::uint32_t below) {
        return static_cast<std::uint32_t>(random_()) % below;
    }

    const RateModel& Rates(std::uint32_t rate, std::uint32_t outputRate) {
        return rates_.try_emplace({rate, outputRate}, rate, outputRate).first->second;
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
    std::map<std::pair<std::uint32_t, std::uint32_t>, RateModel> rates_;
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

TEST_F(PlaybackProperty, WavTakesOfEveryKindSoundLikeTheModel) {
    for (const unsigned bits : {16U, 24U, 32U})
        for (const unsigned channels : {1U, 2U})
            for (const std::uint32_t rate : {44100U, 48000U, 88200U, 96000U})
                for (const bool recorder : {false, true}) {
                    const std::uint32_t outputRate = recorder ? 48000 : 44100;
                    const RateModel& converter = Rates(rate, outputRate);
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

                    const auto outputs = static_cast<std::uint16_t>(1 + Random(2));
                    const Samples mapped = OnChannels(sound, channels, outputs);
                    Samples model;
                    for (const PeriodRange& stretch : Kept(sheet_.cuts, from, stop)) {
                        const std::size_t begin = std::min(
                            std::size_t{stretch.begin} * periodFrames * outputs, mapped.size());
                        const Samples rest(mapped.begin() + static_cast<std::ptrdiff_t>(begin),
                                           mapped.end());
                        const Samples part = converter.Convert(
                            rest, outputs,
                            std::size_t{stretch.end - stretch.begin} * outputRate / perSecond);
                        model.insert(model.end(), part.begin(), part.end());
                    }
                    EXPECT_EQ(Difference(Play(outputs, from), model), "")
                        << bits << " bit, " << channels << " channels, " << rate << " Hz to "
                        << outputRate << " Hz, shift " << audio_.resolutionShift << ", from "
                        << from << " to " << stop << " of " << length_;
                }
}

TEST_F(PlaybackProperty, WindingSoundsLikeTheModel) {
    for (std::uint32_t run = 0; run < 120; ++run) {
        const bool forward = run % 2 == 0;
        transport_ = forward ? TransportState::kFastForward : TransportState::kRewind;
        audio_.resolutionShift = run / 2 % 3;
        const int second = 5 << audio_.resolutionShift;
        const auto periodSamples = 44100 / static_cast<std::uint32_t>(second);
        length_ = 4 + Random(8 * static_cast<std::uint32_t>(second));
        const int length = static_cast<int>(length_);
        Bytes data;
        for (std::uint32_t period = 0; period < length_; ++period)
            for (std::uint32_t i = 0; i < periodSamples; ++i)
                data.insert(data.end(), {static_cast<std::uint8_t>(period), 0});
        WriteFileBytes(path_, WavBytes({}, data));
        MakeCuts();
        const std::uint32_t from = Random(length_);
        player_.SetRange({from, from + Random(length_)});  // winding pays no heed to it

        // A jump of a second, then second / 5 - 1 periods as they follow.
        std::vector<int> model;
        int place = static_cast<int>(from);
        const auto cutAt = [&](int period, bool atEnd) {
            return std::ranges::find_if(sheet_.cuts, [&](const RemovedRange& cut) {
                return static_cast<int>(cut.begin) <= period &&
                       period < static_cast<int>(cut.end) + (atEnd ? 1 : 0);
            });
        };
        for (int buffer = 0; place >= 0 && place < length; ++buffer) {
            const bool jumps = buffer % (second / 5) == 0;
            if (jumps) place += forward ? second : -second;
            const bool back = jumps && !forward;
            for (auto cut = cutAt(place, back); cut != sheet_.cuts.end(); cut = cutAt(place, back))
                place = back ? static_cast<int>(cut->begin) - second : static_cast<int>(cut->end);
            if (place >= 0 && place < length) model.push_back(place++);
        }
        std::vector<int> heard;
        const Samples sound = Play(1, from);
        for (std::size_t at = 0; at < sound.size(); at += periodSamples) {
            heard.push_back(sound[at]);
            EXPECT_EQ(sound[at + periodSamples - 1], sound[at]);
        }
        EXPECT_EQ(heard, model) << (forward ? "forward" : "back") << ", " << second
                                << " periods a second, from " << from << " of " << length_
                                << Cuts();
        EXPECT_GE(player_.Position(), place < 0 ? 0 : length);
        EXPECT_LE(player_.Position(), place < 0 ? 0 : length + 1);
    }
}

/// Decodes frames one by one with the bare library, whose filters are never restarted.
class BareDecoder {
  public:
    BareDecoder() {
        mad_stream_init(&stream_);
        mad_frame_init(&frame_);
        mad_synth_init(&synth_);
    }
    ~BareDecoder() {
        mad_frame_finish(&frame_);
        mad_stream_finish(&stream_);
    }
    BareDecoder(const BareDecoder&) = delete;
    BareDecoder& operator=(const BareDecoder&) = delete;

    Samples Decode(ByteSpan bytes) {
        Bytes space(bytes.begin(), bytes.end());
        space.resize(space.size() + MAD_BUFFER_GUARD);
        mad_stream_buffer(&stream_, space.data(), space.size());
        EXPECT_EQ(mad_frame_decode(&frame_, &stream_), 0);
        mad_synth_frame(&synth_, &frame_);
        Samples samples;
        for (std::size_t i = 0; i < synth_.pcm.length; ++i)
            for (std::size_t channel = 0; channel < synth_.pcm.channels; ++channel)
                samples.push_back(static_cast<std::int16_t>(
                    std::clamp(synth_.pcm.samples[channel][i] + 4096, -(1 << 28), (1 << 28) - 1) >>
                    13));
        return samples;
    }

  private:
    mad_stream stream_{};
    mad_frame frame_{};
    mad_synth synth_{};
};

TEST_F(PlaybackProperty, Mp2TakesSoundLikeTheModel) {
    constexpr std::size_t kFrame = 1152;
    audio_.mp2 = true;
    int pairs = 0;
    for (std::uint32_t run = 0; run < 3 * 24; ++run) {
        audio_.stereo = run % 2 == 1;
        audio_.bitrate.SetMp2Bitrate(run / 2 % 12, files_.services.report);
        audio_.externalRecorder = Random(4) == 3;
        audio_.resolutionShift = run / 24;
        if (!audio_.bitrate.IsLegalFor(audio_.stereo)) continue;
        ++pairs;
        const std::uint32_t perSecond = PeriodsPerSecond(audio_.resolutionShift);
        const std::size_t frameBytes = audio_.bitrate.BitsPerSecond() * 3 / 1000;
        const auto encoder = Layer2Encoder::Create(audio_.bitrate.BitsPerSecond(), audio_.stereo);
        ASSERT_TRUE(encoder);
        const std::size_t frames = 30 + Random(60);
        Bytes file;
        for (std::size_t frame = 0; frame < frames; ++frame) {
            Samples noise(2 * kFrame);
            for (std::int16_t& sample : noise)
                sample = static_cast<std::int16_t>(random_());
            const ByteSpan bytes = encoder->EncodeFrame(&noise[0], &noise[kFrame]);
            file.insert(file.end(), bytes.begin(), bytes.end());
        }
        WriteFileBytes(path_, file);
        length_ = static_cast<std::uint32_t>(frames * kFrame * perSecond / 48000);
        MakeCuts();
        const std::uint32_t from = Random(3) == 0 ? 0 : Random(length_);
        const std::uint32_t end = Random(2) == 0 ? 0 : from + 1 + Random(length_);
        player_.SetRange({from, end});

        // For each buffer, in steps of 1050 samples: frames are decoded while fewer than 1152
        // samples wait, or fewer than the step's windows reach.
        const auto outputs = static_cast<std::uint16_t>(1 + Random(2));
        const std::uint32_t outputRate = audio_.externalRecorder ? 48000 : 44100;
        const RateModel& converter = Rates(48000, outputRate);
        BareDecoder decoder;
        Samples sound;
        std::size_t made = 0;  // samples per channel
        for (const PeriodRange& stretch :
             Kept(sheet_.cuts, from, end == 0 ? length_ : std::min(end, length_))) {
            std::size_t next = stretch.begin * 125 / (3 * perSecond);
            for (std::uint32_t period = stretch.begin; period < stretch.end; ++period)
                for (std::size_t left = outputRate / perSecond, step = 0; left > 0; left -= step) {
                    step = std::min<std::size_t>(left, 1050);
                    const std::size_t wanted =
                        std::max(converter.Begin(made) + kFrame, converter.End(made + step - 1));
                    for (; sound.size() < wanted * outputs; ++next) {
                        const Samples frame =
                            next < frames ? decoder.Decode({&file[next * frameBytes], frameBytes})
                                          : Samples(kFrame * audio_.Channels());
                        const Samples mapped = OnChannels(frame, audio_.Channels(), outputs);
                        sound.insert(sound.end(), mapped.begin(), mapped.end());
                    }
                    made += step;
                }
        }
        EXPECT_EQ(Difference(Play(outputs, from), converter.Convert(sound, outputs, made)), "")
            << audio_.bitrate.BitsPerSecond() << " bit/s, " << audio_.Channels() << " channels to "
            << outputs << " at " << outputRate << " Hz, shift " << audio_.resolutionShift
            << ", from " << from << " to " << end << " of " << length_ << ", " << frames
            << " frames" << Cuts();
    }
    EXPECT_EQ(pairs, 3 * 18);
}

}  // namespace
}  // namespace orma::test
