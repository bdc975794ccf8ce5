#include "project/recording_access.h"

#include <algorithm>

#include "audio/files/vu_file.h"
#include "base/path.h"
#include "base/trace.h"
#include "project/take_rewrite.h"

namespace orma {
namespace {

/// The length of an audio file in buffer periods; `services.audio` takes on its format.
std::uint32_t MeasureRecording(ReaderServices services, const Text& audioPath) {
    AudioState& audio = services.audio;
    FileServices files = services.files;
    // Where a rewrite cannot be ended, sound and levels may not belong together.
    if (!RecoverRewrite(services, audioPath)) return 0;
    RepairTake(files, audioPath);
    // The reader says why a file cannot be opened.
    if (audio.mp2 && files.storage.Exists(audioPath))
        (void)AdoptMp2Bitrate(files, audioPath, audio, files.report);
    return MakeReader(services, audioPath, audio.mp2)->Measure();
}

/// What of the level file a length needs; nothing when it is missing or unusable.
struct StoredLevels {
    std::uint32_t count = 0;
    std::vector<RemovedRange> cuts;
};

std::optional<StoredLevels> ReadStoredLevels(FileServices files, const Text& path) {
    if (!files.storage.Exists(path)) return std::nullopt;
    const std::optional<VuFileHead> head = GetVuFileHeader(files, path);
    if (!head || head->levelCount == 0) return std::nullopt;
    StoredLevels levels{head->levelCount, {}};
    if (head->cutCount > 0) levels.cuts = GetVuRemovedRanges(files, path);
    return levels;
}

}  // namespace

std::optional<CurrentRecording> ReadRecording(ReaderServices services, const Text& audioPath) {
    AudioState adopted = services.audio;
    const std::uint32_t length =
        MeasureRecording({services.files, adopted, services.decoder}, audioPath);
    if (length == 0) return std::nullopt;

    CurrentRecording recording;
    const PathParts parts = SplitPath(audioPath);
    recording.folder = parts.folder;
    recording.name = parts.name;
    recording.audioPath = audioPath;
    recording.levelPath = WithExtension(audioPath, u".jvu");
    recording.length = length;
    std::optional<LevelSheet> sheet = ReadLevelsBeside(services.files, recording.levelPath);
    if (!sheet) return std::nullopt;
    services.audio = adopted;
    recording.sheet = std::move(*sheet);
    if (!recording.sheet.levels.empty()) {
        const auto levels = static_cast<std::uint32_t>(recording.sheet.levels.size());
        // The reader leaves out a last period that is cut short; the levels count it.
        if (recording.sheet.resolutionShift == adopted.resolutionShift)
            recording.length = std::max(length, levels);
        else
            Trace("Resolution shift of level file %u, of project %u",
                  recording.sheet.resolutionShift, adopted.resolutionShift);
    } else {
        recording.sheet.rangeStart = 0;
        recording.sheet.rangeEnd = length;
        recording.sheet.resolutionShift = adopted.resolutionShift;
    }
    return recording;
}

std::uint32_t ClipLength(ReaderServices services, const ClipEntry& clip, const Text& audioPath) {
    std::optional<StoredLevels> levels =
        ReadStoredLevels(services.files, clip.BasePath() + u".jvu");
    if (!levels) {
        AudioState scratch = services.audio;
        levels = StoredLevels{
            MeasureRecording({services.files, scratch, services.decoder}, audioPath), {}};
    }
    // Not the range in the level file: that is what was selected last, and no clip's.
    const std::uint32_t begin = clip.end != 0 ? clip.begin : 0;
    const std::uint32_t end = clip.end != 0 ? std::min(clip.end, levels->count) : levels->count;
    return begin < end ? NetLength(levels->cuts, begin, end) : 0;
}

std::uint16_t ChannelsOf(ReaderServices services, const Text& audioPath) {
    if (services.audio.mp2) return services.audio.Channels();
    AudioState scratch = services.audio;
    const auto reader = MakeReader({services.files, scratch, services.decoder}, audioPath, false);
    return reader->Measure() > 0 ? reader->FileFormat().channels : std::uint16_t{0};
}

}  // namespace orma
