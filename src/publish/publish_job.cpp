#include "publish/publish_job.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "audio/files/vu_file.h"
#include "publish/audio_state_keeper.h"

namespace orma {
namespace {

constexpr std::uint32_t kMaxSampleRate = 48000;  // Hz

// Nobody reads answers to a publication: a name that can never exist (RFC 2606).
constexpr const char16_t* kSender = u"anonymous@orma.invalid";

/// The bytes of the published file.
std::uint64_t TotalBytes(const Publication& publication, const PublicationTemplates& templates,
                         bool withHead) {
    const std::uint64_t soundBytes = publication.DataBytes();
    if (!withHead) return soundBytes;
    const std::uint64_t otherBytes = templates.head.riffSize + 8ULL - templates.mpeg.dataSize;
    if (publication.format.mp2) return otherBytes + soundBytes;
    return otherBytes - MpegFormatBlock::kBytes + PcmFormatBlock::kBytes + soundBytes;
}

/// Nobody reads boxes of a job that goes on by itself; its own words at the end are enough.
class InternetSilence {
  public:
    InternetSilence(ErrorReporter& report, bool silent) : report_(report) {
        report_.SilenceInternetFailures(silent);
    }
    ~InternetSilence() { report_.SilenceInternetFailures(false); }
    InternetSilence(const InternetSilence&) = delete;
    InternetSilence& operator=(const InternetSilence&) = delete;

  private:
    ErrorReporter& report_;
};

}  // namespace

PublishJob::PublishJob(PublishServices services) : s_(services) {}

PublishOutcome PublishJob::MenuPublishClip(bool busy) {
    return PublishClip(Mode::kNormal, busy);
}

PublishOutcome PublishJob::MenuPublishCliplist(bool busy) {
    return PublishCliplist(Mode::kNormal, busy);
}

PublishOutcome PublishJob::MenuPublishClipToFile(bool busy) {
    return PublishClip(Mode::kToFile, busy);
}

PublishOutcome PublishJob::MenuPublishCliplistToFile(bool busy) {
    return PublishCliplist(Mode::kToFile, busy);
}

PublishOutcome PublishJob::MenuPublishFastClip(bool busy) {
    return PublishClip(Mode::kFast, busy);
}

PublishOutcome PublishJob::MenuPublishFastCliplist(bool busy) {
    return PublishCliplist(Mode::kFast, busy);
}

bool PublishJob::IsEnabled(Mode mode) const {
    if (mode == Mode::kToFile) return settings_.publishToFile;
    return mode == Mode::kFast || settings_.ftpPublishing ||
           settings_.method != PublishMethod::kFtp;
}

PublishOutcome PublishJob::PublishClip(Mode mode, bool busy) {
    settings_ = PublishSettingsOf(s_.state.settings);
    if (busy || !IsEnabled(mode)) return PublishOutcome::kRefused;
    const CurrentRecording& recording = s_.project.Recording();
    const bool selected = recording.HasSelection();
    if (!selected && (mode == Mode::kToFile || !settings_.imagePublishing)) {
        s_.readers.files.report.ShowError(u"Nothing recorded or selected");
        return PublishOutcome::kRefused;
    }
    if (!SampleRateFits(s_.readers.audio.sampleRate)) return PublishOutcome::kRefused;
    StoreCurrentRecording();
    if (!selected) {
        // There is no sound to send; the images may be all that is wanted.
        const Text& baseName = s_.project.Name();
        const bool withImages = mode == Mode::kNormal;
        if (withImages && !ChooseDestination(baseName, 0, false)) return PublishOutcome::kRefused;
        if (withImages && HasImages() && s_.state.choices.imagesAttached) {
            const ShownProgress shown(s_.progress);
            return SendCompanions(baseName);
        }
        s_.readers.files.report.ShowError(u"Nothing recorded or selected");
        return PublishOutcome::kRefused;
    }

    ClipEntry clip;
    clip.folder = recording.folder;
    clip.name = recording.name;
    clip.title = recording.title;
    clip.begin = recording.selectionStart;
    clip.end = recording.selectionEnd;
    ClipList clips;
    clips.Append(std::move(clip));
    return Publish(clips, s_.project.Name(), mode == Mode::kToFile, mode == Mode::kFast);
}

PublishOutcome PublishJob::PublishCliplist(Mode mode, bool busy) {
    settings_ = PublishSettingsOf(s_.state.settings);
    ErrorReporter& report = s_.readers.files.report;
    if (busy && mode == Mode::kToFile) return PublishOutcome::kRefused;
    if (busy || !IsEnabled(mode)) {
        report.ShowError(u"MenuPublishCliplist");
        return PublishOutcome::kRefused;
    }
    if (s_.project.Clips().Empty() && (mode == Mode::kToFile || !settings_.imagePublishing)) {
        report.ShowError(u"Nothing in cliplist");
        return PublishOutcome::kRefused;
    }
    if (!SampleRateFits(s_.readers.audio.sampleRate)) return PublishOutcome::kRefused;
    StoreCurrentRecording();
    return Publish(s_.project.Clips(), s_.project.Name(), mode == Mode::kToFile,
                   mode == Mode::kFast);
}

PublishOutcome PublishJob::MenuPublishImage(bool busy) {
    settings_ = PublishSettingsOf(s_.state.settings);
    if (busy || !settings_.imagePublishing) return PublishOutcome::kRefused;
    if (!SampleRateFits(s_.readers.audio.sampleRate)) return PublishOutcome::kRefused;
    StoreCurrentRecording();
    if (!ChooseDestination(s_.project.Name(), 0, true) || !HasImages())
        return PublishOutcome::kRefused;
    const ShownProgress shown(s_.progress);
    return SendImages(s_.project.Name(), settings_.keepImageNames);
}

bool PublishJob::SampleRateFits(std::uint32_t sampleRate) {
    if (sampleRate <= kMaxSampleRate) return true;
    s_.readers.files.report.ShowError(
        FormatText("Sample-rate= %d KHz.\nYou can not publish at\nsample-rates higher than 48 KHz.",
                   static_cast<int>(sampleRate / 1000)));
    return false;
}

/// The level file of the current recording comes to hold what the editor shows. When it cannot be
/// written (reported), the job goes on: it takes the current recording from memory.
void PublishJob::StoreCurrentRecording() {
    CurrentRecording& recording = s_.project.Recording();
    std::erase_if(recording.sheet.cuts,
                  [](const RemovedRange& cut) { return cut.begin == cut.end; });
    if (recording.levelPath.empty()) return;
    if (recording.HasSelection()) {  // else the file keeps its range
        recording.sheet.rangeStart = recording.selectionStart;
        recording.sheet.rangeEnd = recording.selectionEnd;
    }
    (void)WriteVuFile(s_.readers.files, recording.levelPath, recording.sheet);
}

PublishOutcome PublishJob::Publish(const ClipList& clips, const Text& baseName, bool toFile,
                                   bool fast) {
    publishedPath_.clear();
    sentSound_ = false;
    if (clips.Empty()) return PublishOutcome::kRefused;
    settings_ = PublishSettingsOf(s_.state.settings);
    const AudioStateKeeper keeper(s_.readers.audio);
    const std::optional<Publication> publication = Prepare(clips, toFile, fast);
    if (!publication) return PublishOutcome::kFailed;
    if (!toFile && !fast && !ChooseDestination(baseName, publication->DataBytes(), false))
        return PublishOutcome::kRefused;
    if (fast) {
        s_.state.choices.recipient = settings_.recipient;
        s_.state.choices.subject = settings_.subject.empty() ? baseName : settings_.subject;
        if (!toFile && !DestinationFits()) return PublishOutcome::kRefused;
    }

    const AudioDeliveryTerms terms = FillContext(*publication, baseName, toFile);
    const ShownProgress shown(s_.progress);
    const InternetSilence silence(s_.readers.files.report, terms.autoResume);
    AudioDelivery delivery({s_.readers, s_.writers, s_.progress, s_.patience}, *publication, terms);
    const PublishOutcome outcome = delivery.Run(baseName);
    publishedPath_ = s_.writers.Context().publishedPath;
    const bool sent =
        outcome == PublishOutcome::kPublished || outcome == PublishOutcome::kUnverified;
    sentSound_ = sent;
    if (!sent || toFile) return outcome;
    if (fast) settings_.imagePublishing = false;
    const PublishOutcome companions = SendCompanions(baseName);
    return companions == PublishOutcome::kPublished ? outcome : companions;
}

/// Everything that can be known before a byte is written; nothing, with the reason reported, when
/// the clips cannot become one file.
std::optional<Publication> PublishJob::Prepare(const ClipList& clips, bool toFile, bool fast) {
    AudioState& audio = s_.readers.audio;
    ErrorReporter& report = s_.readers.files.report;
    // The clips' own bit rate, as loading a take takes it: the recording on the editor's screen may
    // have another. The reader refuses clips that differ from the first.
    const Text firstPath = ClipAudioPath(clips.At(0), audio.mp2);
    if (audio.mp2 && s_.readers.files.storage.Exists(firstPath))
        (void)AdoptMp2Bitrate(s_.readers.files, firstPath, audio, report);
    outputBitrate_ = audio.bitrate;
    if (fast) outputBitrate_.SetMp2Bitrate(settings_.fastBitrateIndex, report);
    Publication publication;
    publication.storedFrames = audio.mp2;
    publication.fast = fast;
    publication.format.mp2 = audio.mp2 || !toFile;
    publication.format.recordingRate = audio.sampleRate;
    publication.format.bitrate = outputBitrate_.BitsPerSecond();
    publication.format.frameBytes = outputBitrate_.FrameBytes();
    publication.format.shift = audio.resolutionShift;
    if (!ReadClips(clips, publication)) return std::nullopt;
    if (fast) publication.format.channels = 1;

    FileTime written;
    const SystemError error = s_.readers.files.storage.LastWriteTime(firstPath, written);
    if (error != 0) {
        report.ReportSystemFailure(u"GetFileTime", error);
        return std::nullopt;
    }
    publication.recorded = s_.clock.ToLocal(written);

    if (publication.TotalPeriods() == 0) {  // cuts cover everything
        report.ShowError(u"Nothing recorded or selected");
        return std::nullopt;
    }
    if (publication.FileBytes() > std::numeric_limits<std::uint32_t>::max()) {
        report.ShowError(u"Too long for one file (4 GB).");
        return std::nullopt;
    }
    return publication;
}

bool PublishJob::ReadClips(const ClipList& clips, Publication& publication) {
    for (std::int32_t i = 0; i < clips.Count(); ++i) {
        std::optional<ClipPlan> plan =
            ReadClipPlan(s_.readers, clips.At(i), s_.project.Recording());
        if (!plan) return false;
        publication.format.channels = std::max(publication.format.channels, plan->channels);
        if (!publication.storedFrames) {
            if (!SampleRateFits(plan->sampleRate)) return false;
            if (i == 0) publication.format.recordingRate = plan->sampleRate;
            // The coding history names one rate.
            if (plan->sampleRate != publication.format.recordingRate) {
                s_.readers.files.report.ShowError(u"Wrong sample-rate");
                return false;
            }
        }
        publication.clips.push_back(std::move(*plan));
    }
    return true;
}

/// The dialog of this publication, if there is one; false when it was cancelled, or when what it
/// left cannot be sent to.
bool PublishJob::ChooseDestination(const Text& baseName, std::uint64_t audioBytes,
                                   bool imagesOnly) {
    SettingsRecord& record = s_.state.settings;
    const DialogResource* const resource =
        DialogBefore({.method = record.PublishMethod,
                      .imagePublishing = settings_.imagePublishing,
                      .serverChoice = settings_.serverChoice,
                      .ftpServers = FtpChoices(record).lines.size(),
                      .imagesOnly = imagesOnly});
    const bool offersServers = resource != nullptr && resource->Has(DialogRole::kServer);
    if (!HasServer(offersServers)) return false;  // before a dialog is filled in for nothing
    if (resource != nullptr && settings_.method == PublishMethod::kFtp) {
        FtpDialog dialog(s_.state, *resource);
        if (!s_.dialogs.ShowFtpDialog(dialog)) return false;
    } else if (resource != nullptr) {
        EmailDialog dialog(s_.state, *resource, baseName, audioBytes);
        if (!s_.dialogs.ShowEmailDialog(dialog)) return false;
    }
    settings_ = PublishSettingsOf(record);
    return DestinationFits();
}

/// Is there a server to send to, or does the dialog offer one? Reported otherwise.
bool PublishJob::HasServer(bool offered) {
    const bool ftp = settings_.method == PublishMethod::kFtp;
    if (settings_.method == PublishMethod::kOutbox) return true;
    if (!(ftp ? settings_.ftp.server : settings_.smtp.server).empty()) return true;
    // An FTP dialog lists servers alone, a mail dialog placeholders, too.
    if (offered && (ftp || SmtpChoices(s_.state.settings).lines.front().entry)) return true;
    s_.readers.files.report.ShowError(
        (ftp ? Text(u"No FTP server is set up.") : Text(u"No mail server is set up.")) +
        u"\nIt is added with orma-setup.");
    return false;
}

bool PublishJob::DestinationFits() {
    if (!HasServer(false)) return false;
    return settings_.method == PublishMethod::kFtp ||
           RequireMailAddress(s_.readers.files.report, s_.state.choices.recipient);
}

/// Fills in what the writer is to write and where.
AudioDeliveryTerms PublishJob::FillContext(const Publication& publication, const Text& baseName,
                                           bool toFile) {
    AudioDeliveryTerms terms;
    terms.bitrate = outputBitrate_;
    const bool storedFrames = publication.storedFrames;
    if (toFile)
        terms.writer = storedFrames ? WriterKind::kBwfMp2File : WriterKind::kBwfWavFile;
    else if (settings_.method == PublishMethod::kFtp)
        terms.writer = WriterKind::kBwfFtp;
    else
        terms.writer = WriterKind::kBwfEmail;
    terms.autoResume = settings_.autoResume && terms.writer == WriterKind::kBwfFtp;

    WriterContext& context = s_.writers.Context();
    context.recordingFolder = s_.project.Folder();
    context.publishExtension = settings_.publishExtension;
    context.publication = TemplatesOf(publication, ToWindows1252(s_.project.ProjectText()),
                                      settings_.originator, s_.clock.Ticks());
    RemoteDestination& remote = context.remote;
    remote.account = settings_.ftp;
    remote.broadcastWave = settings_.broadcastWave || terms.writer != WriterKind::kBwfFtp;
    // Receivers choose by the extension; bare frames of a WAV project are no WAV file.
    if (storedFrames)
        remote.extension = settings_.publishExtension;
    else
        remote.extension = remote.broadcastWave ? u"wav" : u"mp2";
    remote.delivery = Delivery();
    remote.message = Message(baseName + u"." + remote.extension);
    terms.totalBytes = TotalBytes(publication, context.publication, remote.broadcastWave);
    return terms;
}

MailDelivery PublishJob::Delivery() const {
    return {.viaOutbox = settings_.method == PublishMethod::kOutbox,
            .account = settings_.smtp,
            .outboxFolder = s_.state.programFolder + u"outbox"};
}

MailMessage PublishJob::Message(const Text& attachmentName) const {
    return {.recipient = s_.state.choices.recipient,
            .subject = s_.state.choices.subject,
            .sender = kSender,
            .body = ToWindows1252(s_.project.ProjectText()),
            .attachmentName = attachmentName};
}

bool PublishJob::HasImages() const {
    const ImageList& images = s_.state.choices.images;
    return images.Count() > 0 && images.TotalBytes() > 0;
}

/// Calls `send` with a delivery to the destination in use; failed where there is no network.
template <class Send>
PublishOutcome PublishJob::WithImageWriter(Send send) {
    const RemoteDestination& remote = s_.writers.Context().remote;
    const auto deliver = [&](JStreamImageWrite& writer) {
        s_.patience.Start();
        ImageDelivery delivery(s_.readers.files, s_.progress, s_.patience, writer);
        return send(delivery);
    };
    if (settings_.method == PublishMethod::kFtp && remote.ftp != nullptr) {
        JStreamImageWritePubFTP writer(*remote.ftp, settings_.ftp);
        return deliver(writer);
    }
    if (settings_.method != PublishMethod::kFtp && remote.mail != nullptr) {
        JStreamImageWritePubEMAIL writer(*remote.mail, Delivery(), Message({}));
        return deliver(writer);
    }
    s_.readers.files.report.ShowError(u"There is no network.");
    return PublishOutcome::kFailed;
}

PublishOutcome PublishJob::SendImages(const Text& baseName, bool keepNames) {
    const auto images = NamedImages(s_.state.choices.images, baseName, keepNames);
    return WithImageWriter([&](ImageDelivery& delivery) { return delivery.SendImages(images); });
}

/// What goes along with the sound: the images that the dialog attached, and by FTP the text.
PublishOutcome PublishJob::SendCompanions(const Text& baseName) {
    const std::string text = ToWindows1252(s_.project.ProjectText());
    const bool withImages =
        settings_.imagePublishing && s_.state.choices.imagesAttached && HasImages();
    const bool withText =
        settings_.method == PublishMethod::kFtp && settings_.publishText && !text.empty();
    if (!withImages && !withText) return PublishOutcome::kPublished;
    const auto images = NamedImages(s_.state.choices.images, baseName, false);
    return WithImageWriter([&](ImageDelivery& delivery) {
        PublishOutcome outcome = PublishOutcome::kPublished;
        if (withImages) outcome = delivery.SendImages(images);
        if (withText && outcome == PublishOutcome::kPublished)
            outcome = delivery.SendText(baseName + settings_.textExtension, text);
        return outcome;
    });
}

}  // namespace orma
