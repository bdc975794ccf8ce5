#include "publish/verify_quality.h"

#include <algorithm>
#include <numeric>
#include <optional>
#include <string_view>

#include "audio/files/buffer_period.h"
#include "publish/peak_envelope.h"
#include "publish/quality_text.h"

namespace orma {
namespace {

// A line a mark, at most 1003 marks a clip; a report that would not fit here is none of ours.
constexpr std::uint32_t kMaxReportBytes = 16U << 20;

struct Line {
    std::size_t at = 0;  // within the text
    std::string_view text;
};

std::vector<Line> SplitLines(std::string_view text, bool& ended) {
    std::vector<Line> lines;
    std::size_t at = 0;
    while (at < text.size()) {
        const std::size_t end = text.find("\r\n", at);
        if (end == std::string_view::npos) break;
        lines.push_back({at, text.substr(at, end - at)});
        at = end + 2;
    }
    ended = at == text.size();
    return lines;
}

/// Takes `word` off the front of `rest`; false when it does not stand there.
bool TakeWord(std::string_view& rest, std::string_view word) {
    if (!rest.starts_with(word)) return false;
    rest.remove_prefix(word.size());
    return true;
}

/// Takes `least` to `most` digits off the front.
bool TakeNumber(std::string_view& rest, std::size_t least, std::size_t most, std::uint32_t& value) {
    std::size_t digits = 0;
    value = 0;
    while (digits < most && digits < rest.size() && rest[digits] >= '0' && rest[digits] <= '9')
        value = value * 10 + static_cast<std::uint32_t>(rest[digits++] - '0');
    rest.remove_prefix(digits);
    return digits >= least;
}

struct Cue {
    std::uint32_t number = 0;
    std::uint64_t seconds = 0;
    std::uint32_t fraction = 0;  // twice the period within the second
    std::string_view timeText;
    std::string_view title;
};

std::optional<Cue> ParseCue(std::string_view line) {
    Cue cue;
    std::uint32_t hours = 0;
    std::uint32_t minutes = 0;
    std::uint32_t seconds = 0;
    std::string_view rest = line;
    if (!TakeWord(rest, "C=N") || !TakeNumber(rest, 3, 9, cue.number) || !TakeWord(rest, ", TS="))
        return std::nullopt;
    const std::string_view fromTime = rest;
    if (!TakeNumber(rest, 2, 6, hours) || !TakeWord(rest, ":") ||
        !TakeNumber(rest, 2, 2, minutes) || !TakeWord(rest, ":") ||
        !TakeNumber(rest, 2, 2, seconds) || !TakeWord(rest, ":") ||
        !TakeNumber(rest, 1, 2, cue.fraction) || minutes > 59 || seconds > 59)
        return std::nullopt;
    cue.timeText = fromTime.substr(0, fromTime.size() - rest.size());
    if (!TakeWord(rest, ", T=")) return std::nullopt;
    cue.title = rest;
    cue.seconds = (std::uint64_t{hours} * 60 + minutes) * 60 + seconds;
    return cue;
}

unsigned ShiftOf(const LevlChunk& levl) {
    return levl.blockSize == 9600 ? 0 : levl.blockSize == 4800 ? 1 : 2;
}

/// Tells the cue lines of marks, the clip's title with 'M' and a number, from those of clips. The
/// first clip's title stands nowhere, so until the second is known a line may be either.
class JoinFinder {
  public:
    [[nodiscard]] bool MayBeJoin(std::string_view title) {
        const std::size_t last = title.find_last_not_of("0123456789");
        const bool numbered =
            last != std::string_view::npos && last + 1 < title.size() && title[last] == 'M';
        if (numbered && !clip_) return true;
        if (numbered && title.substr(0, last) == *clip_) return false;
        clip_ = title;
        return true;
    }

  private:
    std::optional<std::string_view> clip_;
};

void CheckLastCue(const Cue& cue, std::uint64_t at, const LevlChunk& levl, VerifyNotes& notes) {
    const std::string length =
        CueTime(static_cast<std::uint32_t>(levl.peaks.size()), ShiftOf(levl));
    notes.Require(cue.title == "End", at, "last cue line is not 'End'");
    if (cue.timeText != length)
        notes.Find(at,
                   "'End' is at " + std::string(cue.timeText) + ", 'levl' is " + length + " long");
}

QualityFacts CheckCues(const std::vector<Line>& lines, std::uint64_t textAt, const LevlChunk* levl,
                       VerifyNotes& notes) {
    QualityFacts facts;
    const std::size_t before = notes.Found();
    std::uint64_t lastTime = 0;
    JoinFinder joins;
    for (std::size_t i = 2; i < lines.size(); ++i) {
        const std::uint64_t at = textAt + lines[i].at;
        const std::optional<Cue> cue = ParseCue(lines[i].text);
        if (!cue) {
            notes.Find(at, Format("line %zu is no cue line", i + 1));
            continue;
        }
        if (cue->number != i - 2)
            notes.Find(at, Format("cue line %u should be number %zu", cue->number, i - 2));
        const std::uint64_t time = cue->seconds * 100 + cue->fraction;
        notes.Require(time >= lastTime, at, "cue line before the one above it");
        lastTime = time;
        if (levl == nullptr) continue;
        const std::uint64_t position =
            cue->seconds * PeriodsPerSecond(ShiftOf(*levl)) + cue->fraction / 2;
        if (joins.MayBeJoin(cue->title) && position < levl->peaks.size())
            facts.joins.push_back(static_cast<std::uint32_t>(position));
        if (i + 1 == lines.size()) CheckLastCue(*cue, at, *levl, notes);
    }
    if (notes.Found() == before)
        notes.Fact(Format("%zu cue lines in order, the last one 'End'", lines.size() - 2));
    return facts;
}

QualityFacts CheckText(std::string_view text, std::uint64_t at, const LevlChunk* levl,
                       VerifyNotes& notes) {
    bool ended = false;
    const std::vector<Line> lines = SplitLines(text, ended);
    notes.Require(ended, at, "last line of the report has no end");
    if (lines.size() < 3) {
        notes.Find(at, "quality report lacks lines");
        return {};
    }
    notes.Require(lines[0].text == "SM=00:00:00:0", at, "report does not begin with 'SM='");
    if (levl != nullptr) {
        const std::string peak = PeakDecibels(LargestPeak(*levl));
        const std::string wanted = "P=QP:MaxPeak:" + peak + "dBFSL;" + peak + "dBFSR";
        if (lines[1].text == wanted)
            notes.Fact("peak line fits 'levl': " + peak + " dBFS");
        else
            notes.Find(at + lines[1].at, "peak line should be " + wanted);
    }
    return CheckCues(lines, at, levl, notes);
}

}  // namespace

QualityFacts CheckQuality(VerifySource& source, const FileChunk& qlty, std::uint32_t dataSum,
                          const LevlChunk* levl, VerifyNotes& notes) {
    constexpr std::uint32_t kSums = 8;  // both checksums
    if (qlty.size < 2 * kSums || qlty.size > kMaxReportBytes) {
        notes.Find(qlty.offset + 4, Format("'qlty' has %u bytes", qlty.size));
        return {};
    }
    Bytes content(qlty.size);
    if (!source.Read(qlty.Content(), content)) {
        notes.Find(qlty.Content(), "cannot be read");
        return {};
    }
    const auto reportSum = LoadLe<std::uint32_t>(&content[0]);
    const auto waveSum = LoadLe<std::uint32_t>(&content[4]);
    // The report's sum ends 16 bytes in front of the chunk's end.
    const std::uint32_t summed =
        content.size() < kSums + 16U
            ? 0
            : std::accumulate(content.begin() + kSums, content.end() - 16, std::uint32_t{0});
    if (reportSum == summed)
        notes.Fact(Format("FileSecurityReport fits: %u", reportSum));
    else
        notes.Find(qlty.Content(),
                   Format("FileSecurityReport is %u, the report has %u", reportSum, summed));
    if (waveSum == dataSum)
        notes.Fact(Format("FileSecurityWave fits: %u", waveSum));
    else
        notes.Find(qlty.Content() + 4,
                   Format("FileSecurityWave is %u, the data has %u", waveSum, dataSum));

    const std::uint64_t textAt = qlty.Content() + kSums;
    const std::string_view whole(reinterpret_cast<const char*>(content.data()) + kSums,
                                 content.size() - kSums);
    const std::size_t length = std::min(whole.find('\0'), whole.size());
    if (whole.find_first_not_of('\0', length) != std::string_view::npos)
        notes.Find(textAt + length, "bytes behind the report's end");
    const std::uint32_t wanted = QltyChunk::BlockBytes(static_cast<std::uint32_t>(length)) - 8;
    if (qlty.size != wanted)
        notes.Find(qlty.offset + 4,
                   Format("'qlty' has %u bytes, its text needs %u", qlty.size, wanted));
    return CheckText(whole.substr(0, length), textAt, levl, notes);
}

}  // namespace orma
