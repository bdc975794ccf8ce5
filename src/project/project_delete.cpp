// Deleting recordings and whole projects.

#include <algorithm>
#include <array>

#include "base/small_letter.h"
#include "project/project.h"
#include "project/same_path.h"
#include "project/text_draft.h"

namespace orma {
namespace {

constexpr std::array<TextView, 3> kKindsInOrder = {u".mp2", u".wav", u".jvu"};
constexpr int kNumbers = 100;

bool IsProjectFile(const Text& extension) {
    return std::ranges::equal(extension, TextView(u".opr"), {}, SmallLetter);
}

/// The journal of a take that goes, unless it is another program's.
SystemError DeleteJournal(FileServices files, const Text& audioPath) {
    if (!ReadTakeJournal(files, audioPath)) return 0;
    return files.storage.Delete(WithExtension(audioPath, TakeJournal::kExtension));
}

}  // namespace

bool Project::DeletePath(const Text& path) {
    if (!IsProjectFile(SplitPath(path).extension) && IsBeingRecorded(Disk(), path)) {
        Files().report.ShowError(u"The recording is in use: " + path);
        return false;
    }
    if (const SystemError error = Disk().Delete(path); error != 0) {
        Files().report.ReportSystemFailure(u"DeleteFile", error);
        return false;
    }
    const PathParts chosen = SplitPath(path);
    return IsProjectFile(chosen.extension) ? DeleteNumbered(chosen) : DeleteRecording(chosen);
}

bool Project::DeleteRecording(const PathParts& chosen) {
    const Text basePath = chosen.folder + chosen.name;
    SystemError error = 0;
    if (Disk().Exists(basePath + u".jvu")) error = Disk().Delete(basePath + u".jvu");
    if (const SystemError failure = DeleteJournal(Files(), basePath + chosen.extension); error == 0)
        error = failure;
    if (error != 0) Files().report.ReportSystemFailure(u"DeleteFile", error);
    const bool clipsRemoved = ForgetDeleted(basePath + chosen.extension);
    return (!clipsRemoved || SaveProject()) && error == 0;
}

bool Project::DeleteNumbered(const PathParts& chosen) {
    const Text basePath = chosen.folder + chosen.name;
    SystemError firstError = 0;
    bool clipsRemoved = false;
    bool inUse = false;
    for (int number = 0; number < kNumbers; ++number) {
        const Text takePath = basePath + FormatText("%.2d", number);
        if (IsBeingRecorded(Disk(), takePath + u".wav")) {
            Files().report.ShowError(u"The recording is in use: " + takePath);
            inUse = true;
            continue;
        }
        const SystemError journalError = DeleteJournal(Files(), takePath + u".wav");
        if (firstError == 0) firstError = journalError;
        for (const TextView extension : kKindsInOrder) {
            const Text path = takePath + Text(extension);
            const SystemError error = Disk().Exists(path) ? Disk().Delete(path) : 0;
            if (firstError == 0) firstError = error;
            if (error == 0 && extension != u".jvu" && ForgetDeleted(path)) clipsRemoved = true;
        }
    }
    if (firstError != 0) Files().report.ReportSystemFailure(u"DeleteFile", firstError);
    (void)WriteTextDraft(Files(), basePath + u".opr", {});

    if (SamePath(basePath, folder_ + name_)) {
        missing_.clear();
        draft_.emplace();
        foreignText_ = data_.text;
        recordingIndex_ = -1;
        OpenNumberedRecording();
        return firstError == 0 && !inUse;
    }
    return (!clipsRemoved || SaveProject()) && firstError == 0 && !inUse;
}

/// Lets go of a recording whose audio file is gone; true when clips referred to it.
bool Project::ForgetDeleted(const Text& audioPath) {
    if (SamePath(audioPath, s_.recording.audioPath)) {
        ClearRecording();
        s_.clips.ClearCurrent();
    }
    const PathParts parts = SplitPath(audioPath);
    if (parts.extension != AudioExtension()) return false;
    const Text basePath = parts.folder + parts.name;
    const auto refers = [&](const ClipEntry& clip) {
        return SamePath(folder_ + clip.name, basePath);
    };
    const bool forgotten = std::erase_if(missing_, refers) > 0;
    return s_.clips.RemoveClipsOf(basePath) || forgotten;
}

}  // namespace orma
