#pragma once

#include <cstdint>
#include <optional>

#include "audio/files/audio_read.h"
#include "audio/files/writer_slot.h"
#include "platform/clock.h"
#include "project/project.h"
#include "publish/clip_sender.h"
#include "publish/progress.h"
#include "publish/publication.h"

namespace orma {

/// What publishing takes from the settings, as plain values.
struct PublishSettings {
    bool publishToFile = false;  // the option that enables publications to files
    Text publishExtension = u"wav";
    OriginatorCodes originator;
};

/// What a job stands on; all outlive it. `writers` works on the audio state of `readers`.
struct PublishServices {
    ReaderServices readers;
    Clock& clock;
    WriterSlot& writers;
    Project& project;
    PublishProgress& progress;
};

/// How a job ended, for callers that must not claim more than was verified.
enum class PublishOutcome {
    kRefused,    // a check before the job failed
    kPublished,  // delivered and confirmed
    kCancelled,  // ended early by the user, who was told; nothing is left of it
    kFailed,     // reported; nothing is left of it
};

/// Turns a clip list into one Broadcast-Wave file and delivers it: checks, preparation, then
/// sending clip after clip. Runs to its end inside the call and reports to the progress listener.
/// The audio state is the same afterwards as before. UI thread.
class PublishJob {
  public:
    PublishJob(PublishServices services, PublishSettings settings);

    /// The menu command "Clip to File": the current recording with its selection. `busy`: recording
    /// or playing, which refuses in silence, as the switched-off option does.
    [[nodiscard]] PublishOutcome MenuPublishClipToFile(bool busy);

    /// The menu command "Cliplist to File". Refuses in silence while busy.
    [[nodiscard]] PublishOutcome MenuPublishCliplistToFile(bool busy);

    /// Publishes a clip list to the file "pub_" + base name + extension in the project's folder. An
    /// older file of that name is replaced by a complete new one or stays as it is. An empty list
    /// ends at once (refused).
    [[nodiscard]] PublishOutcome PublishToFile(const ClipList& clips, const Text& baseName);

    /// The final path of the last publication to a file; empty when it was not published.
    [[nodiscard]] const Text& PublishedPath() const { return publishedPath_; }

  private:
    [[nodiscard]] bool SampleRateFits(std::uint32_t sampleRate);
    void StoreCurrentRecording();
    [[nodiscard]] std::optional<Publication> Prepare(const ClipList& clips);
    [[nodiscard]] bool ReadClips(const ClipList& clips, Publication& publication);
    [[nodiscard]] PublishOutcome Send(const Publication& publication, const Text& baseName);
    [[nodiscard]] SendEnd SendClips(const Publication& publication, JStreamAudioWrite& writer);
    [[nodiscard]] PublishOutcome Outcome(SendEnd end);

    PublishServices s_;
    PublishSettings settings_;
    Text publishedPath_;
};

}  // namespace orma
