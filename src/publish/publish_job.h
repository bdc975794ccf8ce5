#pragma once

#include <cstdint>

#include "audio/files/audio_read.h"
#include "audio/files/writer_slot.h"
#include "platform/clock.h"
#include "project/project.h"
#include "publish/progress.h"

namespace orma {

/// What publishing takes from the settings, as plain values.
struct PublishSettings {
    bool publishToFile = false;  // the option that enables publications to files
    bool imagePublishing = true;
    Text publishExtension = u"wav";
    std::uint32_t originatorCountry = 0;
    std::uint32_t originatorOrganisation = 0;
    std::uint32_t originatorUser = 0;
    std::uint32_t fastBitrateIndex = 3;
};

/// What a job stands on; all outlive it.
struct PublishServices {
    ReaderServices readers;
    Clock& clock;
    WriterSlot& writers;
    Project& project;
    PublishProgress& progress;
};

enum class PublishMode { kNormal, kToFile, kFast };

/// How a job ended, for callers that must not claim more than was verified.
enum class PublishOutcome {
    kRefused,    // a check failed (reported) or there was nothing to publish
    kPublished,  // delivered and confirmed
    kCancelled,  // ended early by the user, who was told
    kFailed,     // reported
};

/// Turns a clip list into one Broadcast-Wave file and delivers it. Runs to its end inside the call
/// and reports to the progress listener. UI thread.
class PublishJob {
  public:
    PublishJob(PublishServices services, PublishSettings settings);

    /// The menu commands "Clip to File" and "Clip": the current recording with its selection.
    [[nodiscard]] PublishOutcome MenuPublishClip(PublishMode mode, bool busy);

    /// The menu commands "Cliplist to File" and "Cliplist".
    [[nodiscard]] PublishOutcome MenuPublishCliplist(PublishMode mode, bool busy);

    /// Publishes a clip list under a base name. An empty list ends at once (refused).
    [[nodiscard]] PublishOutcome Publish(const ClipList& clips, const Text& baseName,
                                         PublishMode mode);

    /// The final path of the last publication to a file.
    [[nodiscard]] const Text& PublishedPath() const { return publishedPath_; }

  private:
    PublishServices s_;
    PublishSettings settings_;
    Text publishedPath_;
};

}  // namespace orma
