#include "publish/quality_text.h"

#include <array>
#include <charconv>
#include <cmath>

#include "audio/files/buffer_period.h"
#include "base/text.h"

namespace orma {
namespace {

/// Numbers the cue lines through the whole report, from 0.
class CueLines {
  public:
    CueLines(std::string& text, unsigned shift) : text_(text), shift_(shift) {}

    void Add(std::uint32_t position, const std::string& title) {
        text_ += Format("C=N%03u, TS=%s, T=", number_++, CueTime(position, shift_).c_str());
        text_ += title + "\r\n";
    }

  private:
    std::string& text_;
    unsigned shift_;
    unsigned number_ = 0;
};

/// Where sound begins: a cut that covers the range's begin moves it.
std::uint32_t KeptBegin(const ClipPlan& clip) {
    return clip.kept.empty() ? clip.end : clip.kept.front().begin;
}

}  // namespace

std::string CueTime(std::uint32_t periods, unsigned shift) {
    const std::uint32_t second = PeriodsPerSecond(shift);
    const std::uint32_t inHour = periods % (second * 3600);
    return Format("%02u:%02u:%02u:%1u", periods / (second * 3600), inHour / (second * 60),
                  inHour % (second * 60) / second, periods % second * 2);
}

std::string PeakDecibels(std::uint8_t peak) {
    std::array<char, 32> digits{};
    const double decibels = 20 * std::log10(peak / 255.0);
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), decibels,
                                      std::chars_format::fixed, 1);
    return {digits.data(), result.ptr};
}

std::string QualityText(std::span<const ClipPlan> clips, std::uint8_t maxPeak, unsigned shift) {
    std::string text = "SM=00:00:00:0\r\n";
    const std::string peak = PeakDecibels(maxPeak);
    text += "P=QP:MaxPeak:" + peak + "dBFSL;" + peak + "dBFSR\r\n";

    CueLines cues(text, shift);
    std::uint32_t offset = 0;
    for (std::size_t i = 0; i < clips.size(); ++i) {
        const ClipPlan& clip = clips[i];
        for (std::size_t mark = 0; mark < clip.marks.size(); ++mark) {
            const std::uint32_t position = clip.marks[mark];
            // A mark in front of the clip's sound is not in the file, whatever precedes the clip.
            if (position < KeptBegin(clip) || position >= clip.end) continue;
            // Of a cut that holds the mark only the part before it is gone: the cue stands where
            // the sound goes on.
            const std::uint32_t before = NetLength(clip.cuts, clip.begin, position);
            cues.Add(offset + before, clip.title + Format("M%zu", mark));
        }
        offset += clip.NetLength();
        cues.Add(offset, i + 1 < clips.size() ? clips[i + 1].title : "End");
    }
    return text;
}

}  // namespace orma
