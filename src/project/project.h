#pragma once

#include <cstdint>
#include <vector>

#include "audio/engine/recorder_listener.h"
#include "audio/files/audio_read.h"
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
    Text textFile;
    std::uint32_t descriptionMode = 0;
};

/// What a project stands on; all outlive it.
struct ProjectServices {
    ReaderServices readers;  // files, audio state, decoder
    Clock& clock;
    ClipList& clips;
    CurrentRecording& recording;
};

/// The current project: a named set of numbered recordings in one folder and a project file with
/// its clip list, text and recording parameters. UI thread.
class Project : public TakeKeeper {
  public:
    explicit Project(ProjectServices services);

    void SetOptions(ProjectOptions options) { options_ = std::move(options); }

    /// Makes `folder` and `name` ("default" when empty) the current project without reading or
    /// creating anything.
    void SetPath(const Text& folder, const Text& name);

    [[nodiscard]] const Text& Folder() const { return folder_; }
    [[nodiscard]] const Text& Name() const { return name_; }
    [[nodiscard]] Text ProjectFilePath() const;
    [[nodiscard]] Text RecordingBaseName() const;  // folder + name + NN
    [[nodiscard]] Text LevelFilePath() const;
    [[nodiscard]] Text AudioFilePath() const;

    /// Sets up the current path as a new, empty project in the format of the options.
    void NewProject();

    /// Moves the recording index on by one and recomputes the current paths.
    void NextRecording();

    /// Moves the index back by one when it is -1 or more.
    void PreviousRecording();

    /// Reads the project file and selects its current clip or recording; false (reported, the old
    /// state stays) when the file is none of ours. Clips whose recording is missing are dropped
    /// from the list but remembered for the next save.
    bool LoadProject();

    /// Writes the project file; with no clip, shown or remembered, the file is removed instead. A
    /// save that drops clips keeps the previous file as a backup (".opr.bak"). False on failure
    /// (reported).
    bool SaveProject();

    /// Makes a clip current and its recording the current recording; false outside the list or
    /// when the recording cannot be read.
    bool SelectClip(std::int32_t index);

    /// Makes a recording file the current one without touching the clip list; false when it
    /// cannot be read.
    bool OpenRecording(const Text& audioPath);

    /// Reads time, length and texts of a clip from its recording; the length stays 0 when the
    /// recording is missing or unreadable.
    void CheckClip(ClipEntry& clip);

    /// Deletes a project's file and its recordings 00 to 99, or a single recording with its level
    /// file, and the clips that refer to what is gone. The question comes before, elsewhere.
    void DeletePath(const Text& path);

    [[nodiscard]] std::int32_t RecordingIndex() const { return recordingIndex_; }
    [[nodiscard]] const Text& ProjectText() const { return data_.text; }
    void SetProjectText(const Text& text) { data_.text = text; }

    /// The recording folder and publishing values that are carried in the project file.
    [[nodiscard]] const ProjectRecord& Data() const { return data_; }

    [[nodiscard]] ClipList& Clips() { return s_.clips; }
    [[nodiscard]] CurrentRecording& Recording() { return s_.recording; }

    // TakeKeeper
    [[nodiscard]] Text PrepareTake() override;
    void TakeFinished() override;
    void TakeDiscarded() override;
    [[nodiscard]] Text StorageFolder() const override { return folder_; }
    [[nodiscard]] bool LiveFtp() const override { return liveFtp_; }

  private:
    void RecomputePaths();

    ProjectServices s_;
    ProjectOptions options_;
    ProjectRecord data_;
    Text folder_;
    Text name_;
    std::int32_t recordingIndex_ = -1;
    bool liveFtp_ = false;
    std::vector<ClipEntry> missing_;  // clips whose recording was absent at load
};

}  // namespace orma
