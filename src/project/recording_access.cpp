#include "project/recording_access.h"

#include <algorithm>

#include "audio/files/vu_file.h"
#include "base/path.h"
#include "base/trace.h"

namespace orma {
namespace {

/// The length of an audio file in buffer periods; `services.audio` takes on its format.
std::uint32_t MeasureRecording(ReaderServices services, const Text& audioPath) {
    AudioState& audio = services.audio;
    FileServices files = services.files;
    (void)MendTakeHeader(files, audioPath);
    // The reader says why a file cannot be opened.
    if (audio.mp2 && files.storage.Exists(audioPath))
        (void)AdoptMp2Bitrate(files, audioPath, audio, files.report);
    return MakeReader(services, audioPath, audio.mp2)->Measure();
}

/// What of the level file a length needs; nothing when it is missing or unusable.
struct LevelRange {
    std::uint32_t begin = 0;
    std::uint32_t end = 0;
    std::uint32_t levels = 0;
    std::vector<RemovedRange> cuts;
};

std::optional<LevelRange> ReadLevelRange(FileServices files, const Text& path) {
    if (!files.storage.Exists(path)) return std::nullopt;
    const std::optional<VuFileHead> head = GetVuFileHeader(files, path);
    if (!head || head->levelCount == 0) return std::nullopt;
    LevelRange range{head->rangeStart, head->rangeEnd, head->levelCount, {}};
    // A head without a range stands for everything.
    if (range.begin >= range.end) range.begin = 0, range.end = range.levels;
    if (head->cutCount > 0) range.cuts = GetVuRemovedRanges(files, path);
    return range;
}

}  // namespace

std::optional<CurrentRecording> ReadRecording(ReaderServices services, const Text& audioPath) {
    AudioState adopted = services.audio;
    const std::uint32_t length =
        MeasureRecording({services.files, adopted, services.decoder}, audioPath);
    if (length == 0) return std::nullopt;
    services.audio = adopted;

    CurrentRecording recording;
    const PathParts parts = SplitPath(audioPath);
    recording.folder = parts.folder;
    recording.name = parts.name;
    recording.audioPath = audioPath;
    recording.levelPath = WithExtension(audioPath, u".jvu");
    recording.length = length;
    std::optional<LevelSheet> sheet;
    if (services.files.storage.Exists(recording.levelPath))
        sheet = ReadVuFile(services.files, recording.levelPath);
    if (sheet) {
        recording.sheet = std::move(*sheet);
        if (recording.sheet.resolutionShift != adopted.resolutionShift)
            Trace("Resolution shift of level file %u, of project %u",
                  recording.sheet.resolutionShift, adopted.resolutionShift);
    } else {
        recording.sheet.rangeEnd = length;
        recording.sheet.resolutionShift = adopted.resolutionShift;
    }
    return recording;
}

std::uint32_t ClipLength(ReaderServices services, const ClipEntry& clip, const Text& audioPath) {
    std::optional<LevelRange> range = ReadLevelRange(services.files, clip.BasePath() + u".jvu");
    if (!range) {
        AudioState scratch = services.audio;
        const std::uint32_t length =
            MeasureRecording({services.files, scratch, services.decoder}, audioPath);
        range = LevelRange{0, length, length, {}};
    }
    if (clip.end != 0) range->begin = clip.begin, range->end = clip.end;
    range->end = std::min(range->end, range->levels);
    return range->begin < range->end ? NetLength(range->cuts, range->begin, range->end) : 0;
}

}  // namespace orma
