// What is heard of a take with cuts, sample by sample, against models that know nothing of buffers,
// queues and events.

#include <cmath>
#include <map>
#include <numbers>
#include <numeric>
#include <random>

#include <mad.h>

#include "audio/engine/player_fixture.h"
#include "audio/files/buffer_period.h"
#include "audio/files/reader_bench.h"
#include "support/sound_files.h"

namespace orma::test {
namespace {

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

/// Another rate's samples by the definition: output n lies n * I / O samples into the sound, and is
/// the sum of a window of samples, each with its weight, which add up to 65536 for each phase.
class RateModel {
  public:
    RateModel(std::uint32_t rate, std::uint32_t outputRate)
        : in_(rate / std::gcd(rate, outputRate)), out_(outputRate / std::gcd(rate, outputRate)) {
        if (in_ == out_) {
            rows_ = {{65536}};
            return;
        }
        const double stretch = std::max(1.0, static_cast<double>(in_) / static_cast<double>(out_));
        const auto reach = static_cast<std::size_t>(std::ceil(8 * stretch));
        for (std::size_t phase = 0; phase < out_; ++phase) {
            const double place = static_cast<double>(reach - 1) +
                                 static_cast<double>(phase) / static_cast<double>(out_);
            std::vector<double> weights(2 * reach);
            for (std::size_t tap = 0; tap < weights.size(); ++tap) {
                const double t = (static_cast<double>(tap) - place) / stretch;
                const double x = std::numbers::pi * t;
                const double window = std::abs(t) < 8 ? std::pow(std::cos(x / 16), 2) : 0;
                weights[tap] = x == 0 ? 1 : std::sin(x) / x * window;
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
    [[nodiscard]] std::size_t End(std::size_t n) const { return Begin(n) + rows_.front().size(); }

    /// `count` samples per channel; silence behind the end of `in`.
    [[nodiscard]] Samples Convert(const Samples& in, unsigned channels, std::size_t count) const {
        Samples out;
        for (std::size_t n = 0; n < count; ++n)
            for (unsigned channel = 0; channel < channels; ++channel) {
                const auto at = [&](std::size_t sample) {
                    const std::size_t place = sample * channels + channel;
                    return std::int64_t{place < in.size() ? in[place] : std::int16_t{0}};
                };
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
    std::vector<std::vector<std::int32_t>> rows_;  // of each phase
};

class PlaybackProperty : public PlayerTest {
  protected:
    /// Plays from `from_` to the end of the range; what was heard.
    Samples Play(std::uint16_t channels) {
        Start(static_cast<std::int32_t>(from_), channels);
        FinishAll();
        EXPECT_TRUE(player.IsClosed() && boxes.texts.empty());
        return AsSamples(waves.out.played);
    }

    /// A few cuts of any length, touching, overlapping, empty, sorted or not.
    void MakeCuts() {
        sheet.cuts.clear();
        for (std::uint32_t left = Random(6); left > 0; --left) {
            const std::uint32_t begin = Random(length);
            const std::uint32_t end = std::min(begin + Random(1 + length / 4), length);
            sheet.cuts.push_back({begin, end, 0});
            if (Random(3) == 0) sheet.cuts.push_back({end, std::min(end + 1, length), 0});
            if (Random(3) == 0) sheet.cuts.push_back({begin, begin, 0});
        }
    }

    /// Chooses a range, or an end of its own for none; what is heard from `from_` on.
    std::vector<PeriodRange> MakeRange() {
        MakeCuts();
        from_ = Random(3) == 0 ? 0 : Random(length);
        const std::uint32_t end = Random(2) == 0 ? 0 : from_ + 1 + Random(length);
        player.SetRange({from_, end});
        return Kept(sheet.cuts, from_, end == 0 ? length : std::min(end, length));
    }

    std::uint32_t Random(std::uint32_t below) {
        return static_cast<std::uint32_t>(random_()) % below;
    }

    const RateModel& Rates(std::uint32_t rate, std::uint32_t outputRate) {
        return rates_.try_emplace({rate, outputRate}, rate, outputRate).first->second;
    }

    /// Names the first sample that differs.
    static void ExpectSame(const Samples& heard, const Samples& model) {
        ASSERT_EQ(heard.size(), model.size());
        const auto [at, expected] = std::ranges::mismatch(heard, model);
        EXPECT_EQ(at - heard.begin(), std::ssize(heard));
    }

    std::mt19937 random_{20};
    std::uint32_t from_ = 0;
    std::map<std::pair<std::uint32_t, std::uint32_t>, RateModel> rates_;
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
                    audio.externalRecorder = recorder;
                    audio.resolutionShift = Random(3);
                    const std::uint32_t perSecond = PeriodsPerSecond(audio.resolutionShift);
                    const std::uint32_t periodFrames = rate / perSecond;
                    length = 4 + Random(2 * perSecond);
                    // Up to a period more or less than the level file says.
                    const std::size_t frames = std::size_t{length} * periodFrames - periodFrames +
                                               Random(2 * periodFrames);
                    Bytes data(frames * channels * bits / 8);
                    for (std::uint8_t& byte : data)
                        byte = static_cast<std::uint8_t>(random_());
                    const unsigned align = channels * bits / 8;
                    WriteFileBytes(audioPath, WavBytes({.channels = channels,
                                                        .sampleRate = rate,
                                                        .bits = bits,
                                                        .blockAlign = align},
                                                       data));
                    Samples sound;  // the upper 16 bits
                    for (std::size_t at = bits / 8 - 2; at + 2 <= data.size(); at += bits / 8)
                        sound.push_back(LoadLe<std::int16_t>(&data[at]));
                    const auto outputs = static_cast<std::uint16_t>(1 + Random(2));
                    const Samples mapped = OnChannels(sound, channels, outputs);
                    Samples model;
                    for (const PeriodRange& stretch : MakeRange()) {
                        const std::size_t begin = std::min(
                            std::size_t{stretch.begin} * periodFrames * outputs, mapped.size());
                        const Samples rest(mapped.begin() + static_cast<std::ptrdiff_t>(begin),
                                           mapped.end());
                        const Samples part = converter.Convert(
                            rest, outputs,
                            std::size_t{stretch.end - stretch.begin} * outputRate / perSecond);
                        model.insert(model.end(), part.begin(), part.end());
                    }
                    SCOPED_TRACE(Format("%u bit, %u channels, %u to %u Hz, from %u", bits, channels,
                                        rate, outputRate, from_));
                    ExpectSame(Play(outputs), model);
                }
}

TEST_F(PlaybackProperty, WindingSoundsLikeTheModel) {
    for (std::uint32_t run = 0; run < 120; ++run) {
        const bool forward = run % 2 == 0;
        transport = forward ? TransportState::kFastForward : TransportState::kRewind;
        audio.resolutionShift = run / 2 % 3;
        const int second = 5 << audio.resolutionShift;
        const auto periodSamples = 44100 / static_cast<std::uint32_t>(second);
        length = 4 + Random(8 * static_cast<std::uint32_t>(second));
        const int last = static_cast<int>(length);
        Bytes data;
        for (std::uint32_t period = 0; period < length; ++period)
            for (std::uint32_t i = 0; i < periodSamples; ++i)
                data.insert(data.end(), {static_cast<std::uint8_t>(period), 0});
        WriteFileBytes(audioPath, WavBytes({}, data));
        MakeCuts();
        from_ = Random(length);
        player.SetRange({from_, from_ + Random(length)});  // winding pays no heed to it

        // A jump of a second, then second / 5 - 1 periods as they follow.
        std::vector<int> model;
        int place = static_cast<int>(from_);
        const auto cutAt = [&](int period, bool atEnd) {
            return std::ranges::find_if(sheet.cuts, [&](const RemovedRange& cut) {
                return static_cast<int>(cut.begin) <= period &&
                       period < static_cast<int>(cut.end) + (atEnd ? 1 : 0);
            });
        };
        for (int buffer = 0; place >= 0 && place < last; ++buffer) {
            const bool jumps = buffer % (second / 5) == 0;
            if (jumps) place += forward ? second : -second;
            const bool back = jumps && !forward;
            for (auto cut = cutAt(place, back); cut != sheet.cuts.end(); cut = cutAt(place, back))
                place = back ? static_cast<int>(cut->begin) - second : static_cast<int>(cut->end);
            if (place >= 0 && place < last) model.push_back(place++);
        }
        std::vector<int> heard;
        const Samples sound = Play(1);
        for (std::size_t at = 0; at < sound.size(); at += periodSamples) {
            heard.push_back(sound[at]);
            EXPECT_EQ(sound[at + periodSamples - 1], sound[at]);
        }
        EXPECT_EQ(heard, model) << "run " << run;
        EXPECT_GE(player.Position(), place < 0 ? 0 : last);
        EXPECT_LE(player.Position(), place < 0 ? 0 : last + 1);
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
    audio.mp2 = true;
    int pairs = 0;
    for (std::uint32_t run = 0; run < 3 * 24; ++run) {
        audio.stereo = run % 2 == 1;
        audio.bitrate.SetMp2Bitrate(run / 2 % 12, report);
        audio.externalRecorder = Random(4) == 3;
        audio.resolutionShift = run / 24;
        if (!audio.bitrate.IsLegalFor(audio.stereo)) continue;
        ++pairs;
        const std::uint32_t perSecond = PeriodsPerSecond(audio.resolutionShift);
        const std::size_t frameBytes = audio.bitrate.FrameBytes();
        const std::size_t frames = 30 + Random(60);
        const Samples noise = ExtremeNoise(run, frames * kFrame * audio.Channels());
        const Bytes file = EncodeMp2(audio, report, noise, audio.stereo);
        WriteFileBytes(audioPath, file);
        length = static_cast<std::uint32_t>(frames * kFrame * perSecond / 48000);

        // For each buffer, in steps of 1050 samples: frames are decoded while fewer than 1152
        // samples wait, or fewer than the step's windows reach.
        const auto outputs = static_cast<std::uint16_t>(1 + Random(2));
        const std::uint32_t outputRate = audio.externalRecorder ? 48000 : 44100;
        const RateModel& converter = Rates(48000, outputRate);
        BareDecoder bare;
        Samples sound;
        std::size_t made = 0;  // samples per channel
        for (const PeriodRange& stretch : MakeRange()) {
            std::size_t next = stretch.begin * 125 / (3 * perSecond);
            for (std::uint32_t period = stretch.begin; period < stretch.end; ++period)
                for (std::size_t left = outputRate / perSecond, step = 0; left > 0; left -= step) {
                    step = std::min<std::size_t>(left, 1050);
                    const std::size_t wanted =
                        std::max(converter.Begin(made) + kFrame, converter.End(made + step - 1));
                    for (; sound.size() < wanted * outputs; ++next) {
                        const Samples frame =
                            next < frames ? bare.Decode({&file[next * frameBytes], frameBytes})
                                          : Samples(kFrame * audio.Channels());
                        const Samples mapped = OnChannels(frame, audio.Channels(), outputs);
                        sound.insert(sound.end(), mapped.begin(), mapped.end());
                    }
                    made += step;
                }
        }
        SCOPED_TRACE(run);
        ExpectSame(Play(outputs), converter.Convert(sound, outputs, made));
    }
    EXPECT_EQ(pairs, 3 * 18);
}

}  // namespace
}  // namespace orma::test
