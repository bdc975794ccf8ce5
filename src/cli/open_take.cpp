#include "cli/open_take.h"

#include <algorithm>
#include <array>
#include <stdexcept>

#include "app/start_up.h"
#include "audio/files/mp2_header.h"
#include "audio/files/riff_walk.h"
#include "audio/files/vu_file.h"
#include "cli/environment.h"
#include "cli/position.h"
#include "project/same_path.h"
#include "project/take_rewrite.h"

namespace orma::cli {
namespace {

constexpr std::uint32_t kMp2Flag = 1;

/// True for "<project>NN".
bool IsNumberedFor(TextView take, TextView project) {
    if (!take.starts_with(project) || take.size() < project.size() + 2) return false;
    return std::ranges::all_of(take.substr(project.size()),
                               [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
}

bool HoldsClipOf(const ProjectRecord& record, const Text& take) {
    return std::ranges::any_of(record.clips,
                               [&](const ClipEntry& clip) { return clip.name == take; });
}

/// The header of an MP2 file's first frame, which in RIFF stands where `data` begins.
Mp2Header FirstHeader(Application& app, const Text& path) {
    JStreamFile file(app.files, path, true);
    Mp2Header header;
    const auto read = [&] {
        file.Read(header.bytes.data(), static_cast<std::uint32_t>(header.bytes.size()));
    };
    read();
    if (!IsTag(header.bytes.data(), "RIFF")) return header;
    file.SetPosition(static_cast<std::int32_t>(WalkRiff(file).dataOffset));
    read();
    return header;
}

/// The format of a lone take: of its first frame and its level file.
void AdoptFormat(Application& app, const Text& path) {
    AudioState& audio = app.audio;
    audio.mp2 = SplitPath(path).extension == u".mp2";
    if (audio.mp2) audio.stereo = FirstHeader(app, path).Mode() != 3;
    const Text levels = WithExtension(path, u".jvu");
    if (!app.ports.storage.Exists(levels)) return;
    if (const auto sheet = ReadVuFile(app.files, levels))
        audio.resolutionShift = sheet->resolutionShift;
}

/// The clip of the take that is current, else the first one; -1 without any.
std::int32_t ClipOfTake(Application& app, const Text& path) {
    const auto isOfTake = [&](std::int32_t index) {
        return SamePath(app.project.ClipAudioPath(app.clips.At(index)), path);
    };
    if (app.clips.Current() != nullptr && isOfTake(app.clips.CurrentIndex()))
        return app.clips.CurrentIndex();
    for (std::int32_t i = 0; i < app.clips.Count(); ++i)
        if (isOfTake(i)) return i;
    return -1;
}

}  // namespace

Text TakePath(const std::string& argument) {
    Text path = CallerPath(argument);
    const Text extension = SplitPath(path).extension;
    if (extension != u".wav" && extension != u".mp2")
        throw UsageError("not a take (.wav or .mp2): " + argument);
    return path;
}

Text ProjectOfTake(Application& app, const Text& takePath) {
    const PathParts take = SplitPath(takePath);
    std::vector<Text> names;
    if (app.ports.storage.ListFiles(take.folder, names) != 0) return {};
    Text numbered;
    for (const Text& name : names) {
        const PathParts file = SplitPath(name);
        ProjectRecord record;
        if (file.extension != u".opr" ||
            ReadProjectFile(app.files, take.folder + name, record) != ProjectReadResult::kOk ||
            ((record.flags & kMp2Flag) != 0) != (take.extension == u".mp2"))
            continue;
        if (HoldsClipOf(record, take.name)) return take.folder + name;
        // The longest name: "a100" is take 00 of "a1" rather than take 100 of "a".
        if (IsNumberedFor(take.name, file.name) && name.size() > numbered.size()) numbered = name;
    }
    return numbered.empty() ? Text() : take.folder + numbered;
}

void OpenTake(Application& app, const Text& takePath) {
    const auto fail = [&] {
        throw std::runtime_error("the take cannot be read: " + ToUtf8(takePath));
    };
    (void)RecoverRewrite(app.project.Readers(), takePath);  // it may lie aside
    if (!app.ports.storage.Exists(takePath))
        throw std::runtime_error("the file does not exist: " + ToUtf8(takePath));
    const Text project = ProjectOfTake(app, takePath);
    if (project.empty())
        AdoptFormat(app, takePath);
    else if (!OpenProject(app, project))
        fail();
    const std::int32_t clip = ClipOfTake(app, takePath);
    if (!(clip >= 0 ? app.project.SelectClip(clip) : app.project.OpenRecording(takePath))) fail();
}

std::uint32_t TimeInTake(const Application& app, const std::string& text) {
    const std::uint32_t rate = app.audio.PeriodsPerSecond();
    const std::uint32_t position = RequirePosition(text, rate);
    if (position > app.recording.length)
        throw std::runtime_error(text + " lies outside the take, which is " +
                                 PositionText(app.recording.length, rate) + " long");
    return position;
}

void SelectRange(Application& app, const std::string& begin, const std::string& end) {
    const std::uint32_t first = TimeInTake(app, begin);
    const std::uint32_t last = TimeInTake(app, end);
    if (first >= last) throw UsageError("the range is empty: " + begin + " to " + end);
    app.recording.selectionStart = first;
    app.recording.selectionEnd = last;
}

Json TakeFields(const Application& app) {
    Json fields = {{"take", ToJson(app.recording.audioPath)}};
    if (!app.clips.Empty()) fields["project"] = ToJson(app.project.ProjectFilePath());
    fields["length"] = PositionText(app.recording.length, app.audio.PeriodsPerSecond());
    fields["periods"] = app.recording.length;
    return fields;
}

}  // namespace orma::cli
