#pragma once

#include <cstdint>
#include <optional>

#include "audio/files/audio_read.h"
#include "audio/files/writer_slot.h"
#include "platform/clock.h"
#include "project/project.h"
#include "publish/audio_delivery.h"
#include "publish/dialogs/publish_dialogs.h"
#include "publish/image_delivery.h"
#include "publish/progress.h"
#include "publish/publication.h"
#include "publish/publish_outcome.h"
#include "publish/publish_patience.h"
#include "publish/publish_settings.h"

namespace orma {

/// What a job stands on; all outlive it. `writers` works on the audio state of `readers`, and its
/// context has the services of the network, whose patience is `patience`.
struct PublishServices {
    ReaderServices readers;
    Clock& clock;
    WriterSlot& writers;
    Project& project;
    PublishProgress& progress;
    PublishPatience& patience;
    DialogServices state;  // the settings in use and what dialogs have chosen
    PublishDialogs& dialogs;
};

/// Turns a clip list into one Broadcast-Wave file and delivers it, with images and the project's
/// text: checks, preparation, the dialog, then sending. Runs to its end inside the call and reports
/// to the progress listener. The audio state is the same afterwards as before. The settings are
/// looked at when a job begins and after its dialog. UI thread.
class PublishJob {
  public:
    explicit PublishJob(PublishServices services);

    /// The menu commands. `busy`: recording or playing, which refuses. "Clip" publishes the current
    /// recording with its selection, "Cliplist" the project's list. "to File" makes a file beside
    /// the project, "Fast" goes without a dialog to the destination in use, as one channel at a bit
    /// rate of its own, without images.
    [[nodiscard]] PublishOutcome MenuPublishClip(bool busy);
    [[nodiscard]] PublishOutcome MenuPublishCliplist(bool busy);
    [[nodiscard]] PublishOutcome MenuPublishClipToFile(bool busy);
    [[nodiscard]] PublishOutcome MenuPublishCliplistToFile(bool busy);
    [[nodiscard]] PublishOutcome MenuPublishFastClip(bool busy);
    [[nodiscard]] PublishOutcome MenuPublishFastCliplist(bool busy);

    /// The menu command "Image": images alone. Checks and stores the current recording as the
    /// others do; refuses in silence otherwise.
    [[nodiscard]] PublishOutcome MenuPublishImage(bool busy);

    /// Publishes a clip list under a base name: to the file "pub_" + base name + extension in the
    /// project's folder, which replaces an older one only when it is complete, or to the
    /// destination in use. An empty list ends at once (refused).
    [[nodiscard]] PublishOutcome Publish(const ClipList& clips, const Text& baseName, bool toFile,
                                         bool fast);

    /// The final path of the last publication to a file; empty when it was not published.
    [[nodiscard]] const Text& PublishedPath() const { return publishedPath_; }

    /// False when images or a text alone were sent, or nothing.
    [[nodiscard]] bool HasSentSound() const { return sentSound_; }

  private:
    enum class Mode { kNormal, kToFile, kFast };

    [[nodiscard]] PublishOutcome PublishClip(Mode mode, bool busy);
    [[nodiscard]] PublishOutcome PublishCliplist(Mode mode, bool busy);
    [[nodiscard]] bool IsEnabled(Mode mode) const;
    [[nodiscard]] bool SampleRateFits(std::uint32_t sampleRate);
    void StoreCurrentRecording();

    [[nodiscard]] std::optional<Publication> Prepare(const ClipList& clips, bool toFile, bool fast);
    [[nodiscard]] bool ReadClips(const ClipList& clips, Publication& publication);
    [[nodiscard]] bool ChooseDestination(const Text& baseName, std::uint64_t audioBytes,
                                         bool imagesOnly);
    [[nodiscard]] bool HasServer(bool offered);
    [[nodiscard]] bool DestinationFits();
    [[nodiscard]] AudioDeliveryTerms FillContext(const Publication& publication,
                                                 const Text& baseName, bool toFile);
    [[nodiscard]] bool HasImages() const;
    [[nodiscard]] PublishOutcome SendImages(const Text& baseName, bool keepNames);
    [[nodiscard]] PublishOutcome SendCompanions(const Text& baseName);
    [[nodiscard]] MailMessage Message(const Text& attachmentName) const;
    [[nodiscard]] MailDelivery Delivery() const;

    template <class Send>
    [[nodiscard]] PublishOutcome WithImageWriter(Send send);

    PublishServices s_;
    PublishSettings settings_;
    Mp2Bitrate outputBitrate_;
    Text publishedPath_;
    bool sentSound_ = false;
};

}  // namespace orma
