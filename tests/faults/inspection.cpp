#include "inspection.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "app/start_up.h"
#include "audio/files/vu_file.h"
#include "publish/verify.h"

namespace orma::test {
namespace {

constexpr std::uint32_t kShortestTake = 20;  // periods; what is shorter is discarded on purpose

const Text kPublication = u"pub_talk.wav";
constexpr std::size_t kWavHeaderBytes = 44;
constexpr std::size_t kFrameBytes = 576;  // 192 kbit/s at 48000 Hz

}  // namespace

Inspection::Inspection(Medium& medium, Workday& day, Recording recording, Snapshot before)
    : medium_(medium), day_(day), recording_(recording), before_(std::move(before)) {
    FaultyStorage storage(medium_.storage);
    medium_.SetBack(before_);
    wholeAccount_ = day_.Live(storage);
    whole_ = medium_.Look();
    EXPECT_TRUE(wholeAccount_.boxes.empty());
    EXPECT_TRUE(wholeAccount_.saved);
    EXPECT_EQ(wholeAccount_.outcome, PublishOutcome::kPublished);
    if (recording_.edits) {
        EXPECT_EQ(wholeAccount_.edits->done, EditAccount::kAll);
    }

    FakeBoxes boxes;
    const auto app = day_.Start(medium_.storage, boxes);
    EXPECT_TRUE(OpenOrCreateProject(*app, day_.ProjectPath()));
    for (std::size_t i = 0; i < sound_.size(); ++i)
        sound_[i] = RecoveredSound(*app, wholeAccount_.takes[i].name);
    EXPECT_TRUE(Faults(wholeAccount_, FaultyStorage::Extent::kOnce).empty());
}

std::vector<std::string> Inspection::Faults(const Account& account, FaultyStorage::Extent extent) {
    faults_.clear();
    account_ = account;
    extent_ = extent;
    after_ = medium_.Look();
    CheckFiles();
    CheckClaims();
    CheckNextStart();
    return std::move(faults_);
}

void Inspection::Require(bool holds, const std::string& text) {
    if (!holds) faults_.push_back(text);
}

bool Inspection::IsSound(const Text& publication, const Bytes& bytes) {
    if (verified_.contains(bytes)) return true;
    FakeBoxes boxes;
    ErrorReporter report(boxes, medium_.storage);
    const VerifyReport result =
        VerifyPublishedFile({medium_.storage, report}, medium_.Path(publication));
    for (const Finding& finding : result.findings)
        Require(false, ToUtf8(publication) + ": " + finding.text);
    if (result.findings.empty()) verified_.insert(bytes);
    return result.findings.empty();
}

/// True when the file holds what no day changes.
bool Inspection::KeepsSettings(const Text& name) {
    FakeBoxes boxes;
    ErrorReporter report(boxes, medium_.storage);
    SettingsRecord record;
    return ReadSettingsFile({medium_.storage, report}, medium_.Path(name), SettingsFile::kUserState,
                            record) &&
           record.ImageFolder == Workday::kImageFolder;
}

/// Every file that was there is there, and whatever stands under a final name is whole.
void Inspection::CheckFiles() {
    for (const auto& [name, bytes] : before_)
        Require(after_.contains(name) || after_.contains(name + u".old1"),
                ToUtf8(name) + " is gone");

    for (const auto& [name, bytes] : after_) {
        const auto old = before_.find(name);
        if (old != before_.end() && old->second == bytes) continue;
        const auto expected = whole_.find(name);
        if (expected != whole_.end() && expected->second == bytes) continue;
        if (name.ends_with(u".jvu"))
            Require(DecodeVuFile(bytes).has_value(), ToUtf8(name) + " is half");
        if (name.ends_with(u".sup"))
            Require(after_.contains(name + u".old1") || KeepsSettings(name),
                    ToUtf8(name) + " lost old settings");
        if (name.starts_with(u"pub_") && !name.ends_with(u".tmp"))
            Require(IsSound(name, bytes), ToUtf8(name) + " does not verify");
        if (name.ends_with(u".opr")) {
            ProjectRecord project;
            const bool isRead = DecodeProjectFile(bytes, project) == ProjectReadResult::kOk;
            const bool holdsClip =
                std::ranges::count(project.clips, u"talk00", &ClipEntry::name) > 0;
            Require(isRead && project.text.starts_with(u"Harbour") && holdsClip,
                    ToUtf8(name) + " lost what it held");
        }
    }
}

/// Whatever is not as it would be without the fault, the user knows of: from a box, or because a
/// take ended before the stop button was pressed.
void Inspection::CheckClaims() {
    if (!account_.boxes.empty()) return;
    bool takeEnded = false;
    bool takeDiscarded = false;
    for (const TakeAccount& take : account_.takes) {
        takeEnded |= take.endedEarly;
        takeDiscarded |= take.endedEarly && take.delivered < kShortestTake;
    }
    for (const auto& [name, bytes] : whole_) {
        // What is published says nothing of a take that ended, unless there is no such take.
        if (name.starts_with(u"pub_") ? takeDiscarded : takeEnded) continue;
        const auto found = after_.find(name);
        Require(found != after_.end() && found->second == bytes,
                ToUtf8(name) + " differs and nobody was told");
    }
    Require(account_.outcome == PublishOutcome::kPublished, "not published and nobody was told");
    Require(account_.saved, "not saved and nobody was told");
}

void Inspection::CheckNextStart() {
    FakeBoxes boxes;
    const auto app = day_.Start(medium_.storage, boxes);
    if (!OpenOrCreateProject(*app, day_.ProjectPath())) {
        Require(false, "the next start cannot open the project");
        return;
    }
    Require(app->clips.Count() > 0 && app->clips.At(0).name == u"talk00",
            "the next start does not show the old clip");
    for (std::size_t i = 0; i < account_.takes.size(); ++i)
        CheckTake(*app, i);
    if (account_.edits)
        CheckEdits(*app);
    else if (extent_ == FaultyStorage::Extent::kOnce)
        CheckMarks();
    for (const MessageBox& box : boxes.shown)
        Require(box.icon == BoxIcon::kInformation, "the next start shows: " + ToUtf8(box.text));
    CheckNothingIsOverwritten(*app);

    const bool whole = PublishWhatIsWhole(*app, boxes);
    // What is recovered may add to the list, and levels measured from MP2 frames differ from those
    // of the recording.
    const auto isJournal = [](const auto& file) { return file.first.ends_with(u".rec"); };
    const bool recovers = std::ranges::any_of(after_, isJournal);
    if (account_.outcome == PublishOutcome::kPublished && whole && !recovers)
        Require(ReadFileBytes(medium_.Path(kPublication)) == after_.at(kPublication),
                "published something else than the takes hold");
}

/// One refused call costs no mark.
void Inspection::CheckMarks() {
    for (std::size_t i = 0; i < account_.takes.size(); ++i) {
        const TakeAccount& take = account_.takes[i];
        if (!take.started || take.endedEarly) continue;
        const auto marksIn = [](const Snapshot& files, const Text& name) {
            const auto found = files.find(name + u".jvu");
            const auto sheet = found == files.end() ? std::nullopt : DecodeVuFile(found->second);
            return sheet ? sheet->marks : std::vector<std::uint32_t>();
        };
        Require(marksIn(after_, take.name) == marksIn(whole_, wholeAccount_.takes[i].name),
                ToUtf8(take.name) + " lost marks");
    }
}

/// What was said to be done is there, and of what was refused the user knows. Clips that could not
/// be shown, or were recovered, may stand between what was seen.
void Inspection::CheckEdits(const Application& app) {
    for (const std::string& what : account_.edits->silent)
        Require(false, what + " was refused without a box");
    const ListState list = ListOf(app.project);
    const auto stands = [&](const ListState& made) {
        auto place = list.first.begin();
        for (const EditedClip& clip : made.first) {
            place = std::find(place, list.first.end(), clip);
            if (place == list.first.end()) return false;
            ++place;
        }
        return list.second == made.second;
    };
    Require(std::ranges::any_of(account_.edits->lists, stands),
            "the clip list lost what was saved");
    for (const auto& [name, sheet] : account_.edits->sheets) {
        const auto found = DecodeVuFile(ReadFileBytes(medium_.Path(name + u".jvu")));
        Require(found && Sheet{found->marks, found->cuts} == sheet,
                ToUtf8(name) + " lost saved marks or cuts");
    }
}

/// Publishes the clip list; true when all of it could be.
bool Inspection::PublishWhatIsWhole(Application& app, FakeBoxes& boxes) {
    const bool whole = Workday::Publish(app) == PublishOutcome::kPublished;
    Require(whole, "the next start cannot publish: " +
                       (boxes.shown.empty() ? "" : ToUtf8(boxes.shown.back().text)));
    if (whole) (void)IsSound(kPublication, ReadFileBytes(medium_.Path(kPublication)));
    return whole;
}

/// What a take gives after the next start: its sound as stored, without a header; empty when there
/// is no such take.
Bytes Inspection::RecoveredSound(Application& app, const Text& take) {
    const Text path = medium_.Path(take + Text(day_.SoundExtension()));
    if (!medium_.storage.Exists(path) || !app.project.OpenRecording(path)) return {};
    Bytes bytes = ReadFileBytes(path);
    if (!recording_.mp2) bytes.erase(bytes.begin(), bytes.begin() + kWavHeaderBytes);
    return bytes;
}

/// Bytes of the undisturbed take that must be there again.
std::size_t Inspection::LeastBytes(std::size_t index) const {
    const TakeAccount& take = account_.takes[index];
    if (take.closedBeforeFault) return sound_[index].size();
    if (!take.started || (take.endedEarly && take.delivered < kShortestTake)) return 0;
    // A fault that came and went before the take leaves it whole.
    if (take.deliveredBeforeFault == 0 && extent_ != FaultyStorage::Extent::kFromThenOn &&
        !take.endedEarly)
        return sound_[index].size();
    const std::size_t pcm = std::size_t{take.deliveredBeforeFault} * Workday::kPeriodBytes;
    const std::size_t frames = pcm / 2 * 160 / 147 / kMp2FrameSamples;
    // The last frame waits for the samples that its conversion reaches for.
    return recording_.mp2 ? (frames - std::min<std::size_t>(frames, 1)) * kFrameBytes : pcm;
}

void Inspection::CheckTake(Application& app, std::size_t index) {
    const std::size_t least = LeastBytes(index);
    if (least == 0) return;
    const Text& name = account_.takes[index].name;
    const Bytes found = RecoveredSound(app, name);
    const auto end = std::ranges::mismatch(found, sound_[index]).in1;
    const auto same = static_cast<std::size_t>(end - found.begin());
    Require(same >= least, ToUtf8(name) + " holds " + std::to_string(same) + " of " +
                               std::to_string(least) + " bytes that were safe");
}

/// The next take begins beside whatever lies there.
void Inspection::CheckNothingIsOverwritten(Application& app) {
    const Snapshot before = medium_.Look();
    const Text name = app.project.PrepareTake();
    const Text path = medium_.Path(name + Text(day_.SoundExtension()));
    Require(!medium_.storage.Exists(path), ToUtf8(name) + " would be overwritten");
    const Snapshot after = medium_.Look();
    for (const auto& [file, bytes] : before) {
        if (!file.ends_with(day_.SoundExtension())) continue;
        const auto isSame = [&](const auto& entry) { return entry.second.size() == bytes.size(); };
        Require(std::ranges::any_of(after, isSame), ToUtf8(file) + " is gone with the next take");
    }
    app.project.TakeDiscarded(true);
}

}  // namespace orma::test
