#include "publish/verify_peaks.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iterator>
#include <span>

#include "audio/files/buffer_period.h"
#include "audio/files/level_tables.h"

namespace orma {
namespace {

constexpr std::int64_t kStepSamples = SoundPeaks::kStepSamples;
constexpr std::int64_t kFrameSteps = kMp2FrameSamples / kStepSamples;

/// How far a value may lie from the peak of the published sound.
struct Tolerance {
    double factor = 1;  // linear, up and down
    int above = 0;      // of 255, added: how much larger the value may be
    int below = 0;
    std::int64_t reach = 0;     // steps of 2 ms at both ends of a period that a neighbour may own
    std::int64_t delay = 0;     // steps by which the sound trails its levels from the start
    std::int64_t cutShift = 0;  // steps by which it may move anywhere
};

/// Measured with nine spoken samples, synthetic speech at three loudnesses, clipped speech and pink
/// noise, at all three resolutions, recorded at 44100 Hz: the largest deviation beyond the factor
/// was 1 of 255 for PCM (conversion of the rate alone), 1 from 56 kbit/s a channel on. Below that
/// the encoder leaves out whole bands, so that a period of fricatives may all but vanish (52 of 255
/// were missing); a value too small is found there all the same.
Tolerance ToleranceOf(const PublicationFormat& format, std::int64_t periodSteps) {
    constexpr std::uint32_t kFullBand = 56000;  // bit/s a channel
    if (!format.mp2) return {1.12, 2, 2, 2, 0, 2};
    // Stretches begin and end on frames. The filter banks delay by 481 samples.
    const std::int64_t reach = std::min(kFrameSteps + 1, periodSteps / 3);
    if (format.bitrate / format.channels < kFullBand)
        return {1.6, 70, 4, reach, 5, 2 * kFrameSteps + 2};
    return {1.3, 4, 4, reach, 5, 2 * kFrameSteps + 2};
}

/// The published value of a sample peak, 0..255.
int ValueOf(std::uint32_t peak) {
    return Levels().peak[LevelOfPeak(peak)];
}

/// Follows the sound along its levels.
class LevelFollower {
  public:
    /// `joins` ascending; `farthest` in steps.
    LevelFollower(const LevlChunk& levl, const SoundPeaks& peaks, const PublicationFormat& format,
                  std::span<const std::uint32_t> joins, std::int64_t farthest, bool anyAbove)
        : levl_(levl),
          peaks_(peaks),
          period_(levl.blockSize / kStepSamples),
          tolerance_(ToleranceOf(format, period_)),
          joins_(joins),
          farthest_(farthest),
          anyAbove_(anyAbove),
          offset_(tolerance_.delay) {}

    /// True when the value fits here, or where the sound goes on behind a join.
    [[nodiscard]] bool Fits(std::size_t index) {
        if (FitsAt(index, offset_)) return true;
        // A cut moves the sound by at most a frame, after another one that went unnoticed by two; a
        // join moves it also by what was stored behind the last period of the clip before, once.
        // The nearest place at which a run of values fits is taken.
        while (!joins_.empty() && joins_.front() <= index) {
            joins_ = joins_.subspan(1);
            ++joinsPassed_;
        }
        const std::int64_t byCut = tolerance_.cutShift;
        const std::int64_t widest = joinsPassed_ > 0 ? period_ + 4 * kFrameSteps : byCut;
        for (std::int64_t distance = 1; distance <= widest; ++distance) {
            for (const std::int64_t candidate : {offset_ + distance, offset_ - distance}) {
                if (std::abs(candidate - tolerance_.delay) > farthest_) continue;
                if (!RunFitsAt(index, candidate, distance > byCut ? kJoinRun : kCutRun)) continue;
                if (distance > byCut) --joinsPassed_;
                offset_ = candidate;
                return true;
            }
        }
        return false;
    }

    /// True when the value is larger than the sound.
    [[nodiscard]] bool Exceeds(std::size_t index) const { return TooLargeAt(index, offset_); }

    /// The value that the sound has at this place.
    [[nodiscard]] int Value(std::size_t index) const {
        const std::int64_t start = Start(index, offset_);
        return ValueOf(Largest(peaks_.absolute, start, start + period_));
    }

  private:
    static constexpr std::size_t kCutRun = 2;  // values; cuts may follow each other closely
    static constexpr std::size_t kJoinRun = 4;

    [[nodiscard]] std::int64_t Start(std::size_t index, std::int64_t offset) const {
        return static_cast<std::int64_t>(index) * period_ + offset;
    }

    [[nodiscard]] static std::uint32_t Largest(const std::vector<std::uint16_t>& steps,
                                               std::int64_t begin, std::int64_t end) {
        const auto size = static_cast<std::int64_t>(steps.size());
        begin = std::clamp<std::int64_t>(begin, 0, size);
        end = std::clamp<std::int64_t>(end, begin, size);
        std::uint32_t largest = 0;
        for (std::int64_t i = begin; i < end; ++i)
            largest = std::max<std::uint32_t>(largest, steps[static_cast<std::size_t>(i)]);
        return largest;
    }

    [[nodiscard]] bool TooLargeAt(std::size_t index, std::int64_t offset) const {
        const std::int64_t begin = Start(index, offset) - tolerance_.reach;
        const std::int64_t end = begin + period_ + 2 * tolerance_.reach;
        const int most = ValueOf(Largest(peaks_.absolute, begin, end));
        return levl_.peaks[index] > most * tolerance_.factor + tolerance_.above;
    }

    [[nodiscard]] bool TooSmallAt(std::size_t index, std::int64_t offset) const {
        const std::int64_t begin = Start(index, offset) + tolerance_.reach;
        const std::int64_t end = begin + period_ - 2 * tolerance_.reach;
        const int least = ValueOf(Largest(peaks_.positive, begin, end));
        return levl_.peaks[index] < least / tolerance_.factor - tolerance_.below;
    }

    [[nodiscard]] bool FitsAt(std::size_t index, std::int64_t offset) const {
        return (anyAbove_ || !TooLargeAt(index, offset)) && !TooSmallAt(index, offset);
    }

    [[nodiscard]] bool RunFitsAt(std::size_t index, std::int64_t offset, std::size_t run) const {
        const std::size_t end = std::min(index + run, levl_.peaks.size());
        for (std::size_t i = index; i < end; ++i)
            if (!FitsAt(i, offset)) return false;
        return true;
    }

    const LevlChunk& levl_;
    const SoundPeaks& peaks_;
    std::int64_t period_;  // in steps
    Tolerance tolerance_;
    std::span<const std::uint32_t> joins_;  // ahead
    std::uint32_t joinsPassed_ = 0;         // and not yet used up
    std::int64_t farthest_;
    bool anyAbove_;  // values may be larger than the sound
    std::int64_t offset_;
};

/// A value that does not fit the sound, and the one that would.
struct Misfit {
    std::size_t index = 0;
    int sound = 0;
};

/// What a comparison of all values has shown.
struct Comparison {
    std::vector<Misfit> wrong;
    std::vector<Misfit> exceeding;  // larger than the sound, as they may be
};

/// Follows the sound from its beginning. `joins` ascending; `farthest` in steps.
Comparison Compare(const LevlChunk& levl, const SoundPeaks& peaks, const PublicationFormat& format,
                   std::span<const std::uint32_t> joins, std::int64_t farthest, bool anyAbove) {
    // Enough to see what is wrong; each costs a search.
    constexpr std::size_t kMaxWrong = 20;
    // What the stop of a recording cut short has the level that its buffer held before.
    const auto endsClip = [&](std::size_t index) {
        return index + 1 == levl.peaks.size() || std::ranges::binary_search(joins, index + 1);
    };
    LevelFollower follower(levl, peaks, format, joins, farthest, anyAbove);
    const std::size_t fewCuts = 2 + levl.peaks.size() / 50;
    Comparison found;
    for (std::size_t i = 0; i < levl.peaks.size() && found.wrong.size() < kMaxWrong; ++i) {
        const bool fits = follower.Fits(i) || endsClip(i);
        const bool exceeds = follower.Exceeds(i) && !endsClip(i);
        if (fits && !(anyAbove && exceeds)) continue;
        // A cut ends on the lower frame: what it takes of the last period may be its loudest part.
        const bool mayExceed = exceeds && format.mp2;
        (mayExceed ? found.exceeding : found.wrong).push_back({i, follower.Value(i)});
        if (!anyAbove && found.exceeding.size() == fewCuts + kMaxWrong) break;
    }
    if (anyAbove || found.exceeding.size() <= fewCuts) return found;
    found.exceeding.resize(std::min(found.exceeding.size(), kMaxWrong));
    found.wrong.insert(found.wrong.end(), found.exceeding.begin(), found.exceeding.end());
    return found;
}

}  // namespace

void CheckPeaks(const LevlChunk& levl, const FileChunk& chunk, const SoundFacts& sound,
                const PublicationFormat& format, std::vector<std::uint32_t> joins,
                VerifyNotes& notes) {
    // Each clip may add what is stored behind its last period, each stretch between cuts may gain
    // or lose a frame: a hundred cuts, a few frames.
    constexpr std::int64_t kCutFrames = 8;
    const std::int64_t perClip = levl.blockSize + 2 * std::int64_t{kMp2FrameSamples};
    const std::int64_t slack = (std::ssize(joins) + 1) * perClip +
                               (format.mp2 ? kCutFrames * std::int64_t{kMp2FrameSamples} : 0);
    const auto counted = static_cast<std::int64_t>(levl.peaks.size()) * levl.blockSize;
    const auto actual = static_cast<std::int64_t>(sound.samples);
    if (std::abs(counted - actual) > slack) {
        notes.Find(chunk.offset + 28,
                   Format("'levl' covers %lld samples, the sound has %lld",
                          static_cast<long long>(counted), static_cast<long long>(actual)));
        return;
    }

    std::ranges::sort(joins);
    const auto compare = [&](bool anyAbove) {
        return Compare(levl, sound.peaks, format, joins, slack / kStepSamples, anyAbove);
    };
    Comparison found = compare(false);
    // One channel of frames may be the mix of two, under the levels of the louder one: nobody can
    // tell from the file. Softer than the sound they cannot be then either.
    const bool mayBeMix = !found.wrong.empty() && format.mp2 && format.channels == 1;
    if (mayBeMix) found = compare(true);
    for (const Misfit& misfit : found.wrong)
        notes.Find(chunk.offset + LevlChunk::kHeadBytes + misfit.index,
                   Format("value %zu of 'levl' is %u, the sound has %d", misfit.index,
                          levl.peaks[misfit.index], misfit.sound));
    if (!found.wrong.empty()) return;
    if (found.exceeding.empty())
        notes.Fact(Format("all %zu values of 'levl' fit the sound", levl.peaks.size()));
    else
        notes.Fact(Format(
            "'levl' fits the sound; %zu of %zu values are larger, as %s leave them, "
            "the first is value %zu",
            found.exceeding.size(), levl.peaks.size(),
            mayBeMix ? "mixing two channels may" : "cuts may", found.exceeding.front().index));
}

}  // namespace orma
