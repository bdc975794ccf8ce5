#pragma once

#include <cstdint>
#include <optional>
#include <set>
#include <vector>

#include "audio/engine/recorder_listener.h"
#include "audio/files/audio_read.h"
#include "base/path.h"
#include "platform/clock.h"
#include "project/clip_list.h"
#include "project/current_recording.h"
#include "project/project_file.h"

namespace orma {

/// What projects take from the settings, as plain values.
struct ProjectOptions {
    bool liveFtpAllowed = false;      // projects may record straight to FTP
    bool liveFtpNewProjects = false;  // ... and new ones do
    bool recordMp2 = false;           // format of new projects
    bool stereo = false;
    std::uint32_t sampleRateCode = 1;  // of new projects: 0 = 48000, 1 = 44100
    unsigned resolutionShift = 2;
    std::uint32_t bitrateIndex = 3;
    bool useTextFile = false;
    Text textFile{};
    std::uint32_t descriptionMode = 0;
};

/// What a project stands on; all outlive it.
struct ProjectServices {
    ReaderServices readers;  // files, audio state, decoder
    Clock& clock;
    ClipList& clips;
    CurrentRecording& recording;
};

/// A take that was brought back after its recording had been interrupted.
struct RecoveredTake {
    Text name;  // without folder and extension
    std::uint32_t periods = 0;
};

/// The first free name for a new project: `name` itself, else "<name>1-", "<name>2-" and so on,
/// until `folder` holds no project file of that name.
[[nodiscard]] Text FreeProjectName(Storage& storage, const Text& folder, const Text& name);

/// True when a project of this name has takes there that were interrupted or are being recorded.
[[nodiscard]] bool HasInterruptedTakes(Storage& storage, const Text& folder, const Text& name);

/// The current project: a named set of numbered recordings in one folder and a project file with
/// its clip list, text and recording parameters.
///
/// The path may name a file that this program never read, or must not touch (a foreign file, one of
/// a newer version). The project is `attached` to its path once it was loaded from there, created
/// or saved there; until then an empty project leaves the path alone, and whatever a save would
/// overwrite is kept. UI thread.
class Project : public TakeKeeper {
  public:
    explicit Project(ProjectServices services);

    void SetOptions(ProjectOptions options) { options_ = std::move(options); }

    /// Makes `folder` and `name` ("default" when empty) the current path without reading or
    /// creating anything; LoadProject or NewProject follows.
    void SetPath(const Text& folder, const Text& name);

    [[nodiscard]] const Text& Folder() const { return folder_; }
    [[nodiscard]] const Text& Name() const { return name_; }
    [[nodiscard]] Text ProjectFilePath() const;
    [[nodiscard]] Text RecordingBaseName() const;  // folder + name + NN
    [[nodiscard]] Text LevelFilePath() const;
    [[nodiscard]] Text AudioFilePath() const;

    /// The audio file of a clip, of the project's format.
    [[nodiscard]] Text ClipAudioPath(const ClipEntry& clip) const;

    /// Sets up the current path as a new, empty project in the format of the options. Nothing is
    /// written; a text file that cannot be read is reported.
    void NewProject();

    /// Moves the recording index on by one and recomputes the current paths.
    void NextRecording();

    /// Moves the index back by one when it is -1 or more.
    void PreviousRecording();

    /// Reads the project file and selects its current clip, else the recording at its stored index.
    /// False (reported) when the file is none of ours or of a newer version: the old state stays,
    /// and the path is again the one before SetPath, or where there was none, one that is free; so
    /// a later save cannot reach the refused file. Clips whose recording is missing are dropped
    /// from the list but remembered for the next save.
    bool LoadProject();

    /// Writes the project file; with no clip, shown or remembered, the file is removed instead,
    /// provided the project is attached and the file is one of ours. A save that drops clips which
    /// the file holds keeps the previous file as a backup (".opr.bak"). A file there that is none
    /// of ours is moved aside ("name (kept 1).opr"), never overwritten. The current recording's
    /// level file is written as well when it is missing although levels are known: its first write
    /// had failed. False on failure (reported); the previous project file then stands, unless it
    /// was the level file that failed.
    /// Where no file is written for want of clips, the user's text is kept beside its place.
    bool SaveProject();

    /// The same without a look at the level file: on failure the previous project file stands.
    [[nodiscard]] bool SaveProjectFile();

    /// Brings back the takes of this project whose recording was interrupted (told by their
    /// journals): repairs them, writes the level file, measured from the sound, with the marks set
    /// while recording, appends a clip unless one refers to them, and saves the project. A journal
    /// goes once all that stands on the medium. Takes without any sound are removed; one with less
    /// than a reader takes for a recording stays as a file without a clip. Where the project has no
    /// file, it takes on the takes' format.
    void RecoverTakes();

    /// The takes that became clips by the last RecoverTakes.
    [[nodiscard]] const std::vector<RecoveredTake>& Recovered() const { return recovered_; }

    /// The interrupted takes that it could not bring back, or not whole, by name: those that are
    /// being recorded, those that the medium refuses, and those that are too short to be played.
    [[nodiscard]] const std::vector<Text>& LeftAlone() const { return leftAlone_; }

    /// Appends a clip for each recording 00 to 99 of the project that none refers to, and saves.
    /// Returns those that became clips.
    std::vector<RecoveredTake> AdoptRecordings();

    /// Writes the level file of a recording that has none, measured from its sound, with `marks`.
    /// False when the sound cannot be read or the file not be written (reported).
    bool RebuildLevels(const Text& audioPath, std::vector<std::uint32_t> marks = {});

    /// Makes a clip current and its recording the current recording; false outside the list or
    /// when the recording cannot be read (reported unless it is missing); nothing changes then.
    bool SelectClip(std::int32_t index);

    /// Makes a recording file the current one; no clip is current then. False when it cannot be
    /// read (reported); nothing changes then.
    bool OpenRecording(const Text& audioPath);

    /// The index of the current clip where its recording is the current one, so that editing the
    /// one edits the other; else -1: none is current, or its recording could not be opened.
    [[nodiscard]] std::int32_t EditedClip() const;

    /// Empties the current recording: no levels, nothing to play. Its paths stay.
    void ClearRecording();

    /// Reads time, length and texts of a clip from its recording; the length stays 0 when the
    /// recording is missing or unreadable, and nothing is shown. The audio state stays as it was.
    void CheckClip(ClipEntry& clip);

    /// Deletes a project's file and its recordings 00 to 99, or a single recording with its level
    /// file, and the clips that refer to what is gone. The question comes before, elsewhere. False
    /// when something could not be deleted (the first failure is reported); when that is the chosen
    /// file itself, nothing else is touched.
    bool DeletePath(const Text& path);

    [[nodiscard]] std::int32_t RecordingIndex() const { return recordingIndex_; }
    [[nodiscard]] const Text& ProjectText() const { return data_.text; }
    void SetProjectText(const Text& text) { data_.text = text; }

    /// Brings back the text that was written for the current path while it had no project file (see
    /// text_draft.h); beside another text it stands below that. Loading, creating and saving do so
    /// themselves; once per path.
    void AdoptTextDraft();

    /// Straight-to-FTP recording of this project; stays off unless the options allow it.
    void SetLiveFtp(bool on) { liveFtp_ = on && options_.liveFtpAllowed; }

    /// The fields that the project file carries beside its clips.
    [[nodiscard]] const ProjectRecord& Data() const { return data_; }

    /// What recordings are read with, for the operations beside this class.
    [[nodiscard]] const ReaderServices& Readers() const { return s_.readers; }

    [[nodiscard]] ClipList& Clips() { return s_.clips; }
    [[nodiscard]] const ClipList& Clips() const { return s_.clips; }
    [[nodiscard]] CurrentRecording& Recording() { return s_.recording; }
    [[nodiscard]] const CurrentRecording& Recording() const { return s_.recording; }

    // TakeKeeper

    /// Existing files of the take's name, of any kind, move aside to "name00 (kept 1)". A number is
    /// skipped instead when a clip refers to it or may do so (a project file lies there that was
    /// not read), when moving failed (reported), and beyond 99, where the name may be another
    /// project's ("a" 100 and "a1" 00).
    [[nodiscard]] Text PrepareTake() override;

    /// The clip is added and the project saved even when the level file could not be written.
    void TakeFinished() override;

    /// Deletes only what was created since PrepareTake; nothing unless `created`.
    void TakeDiscarded(bool created) override;
    [[nodiscard]] Text StorageFolder() const override { return folder_; }
    [[nodiscard]] bool LiveFtp() const override { return liveFtp_; }

  private:
    static constexpr std::uint32_t kRateCodeBits = 0xFFFF;  // of the audio format word

    // Takes with higher numbers may be another project's: "a" 100 and "a1" 00.
    static constexpr std::int32_t kLastOwnNumber = 99;

    struct Place {
        Text folder;
        Text name;
        bool attached = false;
    };

    [[nodiscard]] FileServices Files() const { return s_.readers.files; }
    [[nodiscard]] Storage& Disk() const { return s_.readers.files.storage; }
    [[nodiscard]] AudioState& Audio() const { return s_.readers.audio; }
    [[nodiscard]] TextView AudioExtension() const { return Audio().mp2 ? u".mp2" : u".wav"; }
    void RecomputePaths();
    void StoreSampleRate(std::uint32_t rate);  // Hz
    void ApplySampleRateCode(std::uint32_t code);
    void AdoptTextFile();
    [[nodiscard]] bool PutTextDraft(const Text& text);
    void OpenNumberedRecording();

    void LeaveRefusedPath();
    void Adopt(ProjectRecord record);
    void AdoptClips(std::vector<ClipEntry> stored);
    [[nodiscard]] std::int32_t ShownIndex(std::int32_t stored) const;
    [[nodiscard]] ProjectRecord RecordToSave() const;
    [[nodiscard]] bool StoreMissingLevels();
    [[nodiscard]] bool MakeRoomFor(const ProjectRecord& record);
    [[nodiscard]] bool RemoveProjectFile();

    void AdoptFormatOf(const Text& audioPath);
    [[nodiscard]] bool RestoreTake(const Text& audioPath, const TakeJournalContent& journal);
    [[nodiscard]] bool IsTooShort(const Text& audioPath) const;
    void SettleJournal(const Text& audioPath);
    [[nodiscard]] RecoveredTake AppendRecording(const Text& name);

    [[nodiscard]] std::set<Text> ReferredNames() const;
    void SelectLastTake();

    [[nodiscard]] bool DeleteRecording(const PathParts& chosen);
    [[nodiscard]] bool DeleteNumbered(const PathParts& chosen);
    bool ForgetDeleted(const Text& audioPath);

    ProjectServices s_;
    ProjectOptions options_;
    ProjectRecord data_;  // without its clips, which are in the list and in missing_
    Text folder_;
    Text name_;
    bool attached_ = false;
    std::optional<Place> before_;  // what SetPath replaced, until the new path proves good
    std::int32_t recordingIndex_ = -1;
    bool liveFtp_ = false;
    bool takePending_ = false;   // between PrepareTake and its end
    Text foreignText_;           // the user did not write it here, or gave it up: not worth a draft
    std::optional<Text> draft_;  // what the draft of the current path holds; none: not read yet
    std::vector<RecoveredTake> recovered_;
    std::vector<Text> leftAlone_;
    std::vector<ClipEntry> missing_;  // clips whose recording was absent at load, as stored
};

}  // namespace orma
