#include "publish/clip_plan.h"

#include <algorithm>

#include "audio/files/buffer_period.h"
#include "audio/files/level_tables.h"
#include "audio/files/measured_levels.h"
#include "audio/files/vu_file.h"
#include "base/trace.h"
#include "project/same_path.h"

namespace orma {
namespace {

// Saving a selection over an MP2 take cuts at the lower frame on both sides, so each time the file
// may come out a frame short of its levels.
constexpr std::uint32_t kFrameSlack = 4;

std::vector<FrameRange> FramesOf(const ClipPlan& plan, const StoredSound& sound, unsigned shift) {
    std::vector<FrameRange> frames;
    for (const PeriodRange& stretch : plan.kept) {
        const bool isLast = &stretch == &plan.kept.back();
        const std::uint32_t first = std::min(Mp2FrameOfPeriod(stretch.begin, shift), sound.frames);
        const std::uint32_t last =
            isLast && plan.takesTail ? sound.frames
                                     : std::min(Mp2FrameOfPeriod(stretch.end, shift), sound.frames);
        if (first < last) frames.push_back({first, last});
    }
    return frames;
}

/// The samples per channel that the sender takes of the plan, the last period of the file being as
/// short as it is. The length of an upload follows from it, so it must be exact.
std::uint64_t SamplesOf(const ClipPlan& plan, const StoredSound& sound) {
    const auto at = [&](std::uint32_t period) {
        return std::min<std::uint64_t>(std::uint64_t{period} * sound.samplesPerPeriod,
                                       sound.samples);
    };
    std::uint64_t samples = 0;
    for (const PeriodRange& stretch : plan.kept) {
        const bool withTail = plan.takesTail && &stretch == &plan.kept.back();
        samples += (withTail ? sound.samples : at(stretch.end)) - at(stretch.begin);
    }
    return samples;
}

StoredSound SoundOf(const AudioFileFormat& format, std::uint32_t length, const AudioState& audio) {
    StoredSound sound{.length = length};
    if (format.bytesPerPeriod > 0) sound.periods = format.dataLength / format.bytesPerPeriod;
    if (audio.mp2) {
        sound.frames = format.dataLength / audio.bitrate.FrameBytes();
    } else if (const std::uint32_t sampleBytes = format.channels * (format.bitsPerSample / 8U);
               sampleBytes > 0) {
        sound.samples = format.dataLength / sampleBytes;
        sound.samplesPerPeriod = format.bytesPerPeriod / sampleBytes;
    }
    return sound;
}

std::optional<LevelSheet> SheetOf(FileServices services, const Text& levelPath,
                                  const CurrentRecording& current) {
    // One that could not be opened bears the name and knows nothing.
    const bool isOpen = current.length > 0 || !current.sheet.levels.empty();
    if (isOpen && SamePath(levelPath, current.levelPath)) return current.sheet;
    return ReadLevelsBeside(services, levelPath);
}

}  // namespace

std::uint32_t ClipPlan::FrameCount() const {
    std::uint32_t count = 0;
    for (const FrameRange& range : frames)
        count += range.last - range.first;
    return count;
}

Text ClipAudioPath(const ClipEntry& clip, bool mp2) {
    return clip.BasePath() + (mp2 ? u".mp2" : u".wav");
}

std::string CueTitle(const ClipEntry& clip) {
    std::string title = ToWindows1252(clip.ShownName());
    const auto isControl = [](char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; };
    std::ranges::replace_if(title, isControl, ' ');
    return title;
}

ClipPlan PlanClip(const ClipEntry& clip, const LevelSheet& sheet, const StoredSound& sound,
                  unsigned shift) {
    ClipPlan plan;
    plan.title = CueTitle(clip);
    plan.cuts = sheet.cuts;
    plan.marks = sheet.marks;

    const auto length = static_cast<std::uint32_t>(sheet.levels.size());
    // Of an MP2 take without levels the editor knows a period less than it holds.
    const bool reachesEnd = clip.end == 0 || clip.end >= std::min(length, sound.length);
    plan.begin = clip.end == 0 ? 0 : std::min(clip.begin, length);
    plan.end = reachesEnd ? length : clip.end;
    plan.kept = KeptStretches(plan.cuts, plan.begin, plan.end);
    plan.takesTail = reachesEnd && !plan.kept.empty() && plan.kept.back().end == length;
    plan.frames = FramesOf(plan, sound, shift);
    plan.samples = SamplesOf(plan, sound);
    for (const PeriodRange& stretch : plan.kept)
        plan.levels.insert(plan.levels.end(), sheet.levels.begin() + stretch.begin,
                           sheet.levels.begin() + stretch.end);
    return plan;
}

bool LevelsCover(const LevelSheet& sheet, const StoredSound& sound, unsigned shift) {
    return !sheet.levels.empty() && sheet.resolutionShift == shift &&
           sheet.levels.size() + 1 >= sound.periods;
}

bool EndsEarly(const LevelSheet& sheet, const StoredSound& sound, unsigned shift) {
    const auto length = static_cast<std::uint32_t>(sheet.levels.size());
    if (sound.frames > 0) return sound.frames + kFrameSlack < Mp2FrameOfPeriod(length, shift);
    return sound.periods + 1 < length;
}

std::optional<ClipPlan> ReadClipPlan(ReaderServices services, const ClipEntry& clip,
                                     const CurrentRecording& current) {
    const unsigned shift = services.audio.resolutionShift;
    const Text audioPath = ClipAudioPath(clip, services.audio.mp2);
    RepairTake(services.files, audioPath);
    const auto reader = MakeReader(services, audioPath, services.audio.mp2);
    const std::uint32_t length = reader->Measure();
    if (length == 0) return std::nullopt;
    const AudioFileFormat format = reader->FileFormat();
    StoredSound sound = SoundOf(format, length, services.audio);

    std::optional<LevelSheet> stored = SheetOf(services.files, clip.BasePath() + u".jvu", current);
    if (!stored) return std::nullopt;
    LevelSheet& sheet = *stored;
    if (!LevelsCover(sheet, sound, shift)) {
        if (!sheet.levels.empty()) Trace("Levels do not fit %s", ToUtf8(audioPath).c_str());
        sheet.levels = MeasuredLevels(*reader, sound.periods, shift);
        if (!reader->IsOpen()) return std::nullopt;
    } else if (EndsEarly(sheet, sound, shift)) {
        services.files.report.ShowError(u"The sound of this recording ends early:\n" + audioPath);
        return std::nullopt;
    } else {
        sound.length = std::max(length, static_cast<std::uint32_t>(sheet.levels.size()));
    }
    reader->CloseReader();

    ClipPlan plan = PlanClip(clip, sheet, sound, shift);
    plan.audioPath = audioPath;
    plan.sampleRate = format.sampleRate;
    plan.channels = format.channels;
    return plan;
}

}  // namespace orma
