#include "publish/publish_job.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "audio/files/vu_file.h"

namespace orma {
namespace {

constexpr std::uint32_t kMaxSampleRate = 48000;  // Hz

/// Validating recordings and choosing the channel mode changes the audio state; this puts it back.
class AudioStateKeeper {
  public:
    explicit AudioStateKeeper(AudioState& audio) : audio_(audio), before_(audio) {}
    ~AudioStateKeeper() { audio_ = before_; }
    AudioStateKeeper(const AudioStateKeeper&) = delete;
    AudioStateKeeper& operator=(const AudioStateKeeper&) = delete;

  private:
    AudioState& audio_;
    AudioState before_;
};

}  // namespace

PublishJob::PublishJob(PublishServices services, PublishSettings settings)
    : s_(services), settings_(std::move(settings)) {}

PublishOutcome PublishJob::MenuPublishClipToFile(bool busy) {
    if (busy || !settings_.publishToFile) return PublishOutcome::kRefused;
    const CurrentRecording& recording = s_.project.Recording();
    if (recording.selectionStart >= recording.selectionEnd) {
        s_.readers.files.report.ShowError(u"Nothing recorded or selected");
        return PublishOutcome::kRefused;
    }
    if (!SampleRateFits(s_.readers.audio.sampleRate)) return PublishOutcome::kRefused;
    StoreCurrentRecording();

    ClipEntry clip;
    clip.folder = recording.folder;
    clip.name = recording.name;
    clip.title = recording.title;
    clip.begin = recording.selectionStart;
    clip.end = recording.selectionEnd;
    ClipList clips;
    clips.Append(std::move(clip));
    return PublishToFile(clips, s_.project.Name());
}

PublishOutcome PublishJob::MenuPublishCliplistToFile(bool busy) {
    if (busy) return PublishOutcome::kRefused;
    ErrorReporter& report = s_.readers.files.report;
    if (!settings_.publishToFile) {
        report.ShowError(u"MenuPublishCliplist");
        return PublishOutcome::kRefused;
    }
    if (s_.project.Clips().Empty()) {
        report.ShowError(u"Nothing in cliplist");
        return PublishOutcome::kRefused;
    }
    if (!SampleRateFits(s_.readers.audio.sampleRate)) return PublishOutcome::kRefused;
    StoreCurrentRecording();
    return PublishToFile(s_.project.Clips(), s_.project.Name());
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
    if (recording.selectionStart < recording.selectionEnd) {  // else the file keeps its range
        recording.sheet.rangeStart = recording.selectionStart;
        recording.sheet.rangeEnd = recording.selectionEnd;
    }
    (void)WriteVuFile(s_.readers.files, recording.levelPath, recording.sheet);
}

PublishOutcome PublishJob::PublishToFile(const ClipList& clips, const Text& baseName) {
    publishedPath_.clear();
    if (clips.Empty()) return PublishOutcome::kRefused;
    const AudioStateKeeper keeper(s_.readers.audio);
    const std::optional<Publication> publication = Prepare(clips);
    if (!publication) return PublishOutcome::kFailed;

    s_.readers.audio.stereo = publication->format.channels == 2;
    WriterContext& context = s_.writers.Context();
    context.recordingFolder = s_.project.Folder();
    context.publishExtension = settings_.publishExtension;
    context.publication = TemplatesOf(*publication, ToWindows1252(s_.project.ProjectText()),
                                      settings_.originator, s_.clock.Ticks());
    s_.writers.SelectWriter(publication->format.mp2 ? WriterKind::kBwfMp2File
                                                    : WriterKind::kBwfWavFile);
    return Send(*publication, baseName);
}

/// Everything that can be known before a byte is written; nothing, with the reason reported, when
/// the clips cannot become one file.
std::optional<Publication> PublishJob::Prepare(const ClipList& clips) {
    AudioState& audio = s_.readers.audio;
    ErrorReporter& report = s_.readers.files.report;
    // The clips' own bit rate, as loading a take takes it: the recording on the editor's screen may
    // have another. The reader refuses clips that differ from the first.
    const Text firstPath = ClipAudioPath(clips.At(0), audio.mp2);
    if (audio.mp2 && s_.readers.files.storage.Exists(firstPath))
        (void)AdoptMp2Bitrate(s_.readers.files, firstPath, audio, report);
    Publication publication;
    publication.format.mp2 = audio.mp2;
    publication.format.recordingRate = audio.sampleRate;
    publication.format.bitrate = audio.bitrate.BitsPerSecond();
    publication.format.frameBytes = audio.bitrate.FrameBytes();
    publication.format.shift = audio.resolutionShift;
    if (!ReadClips(clips, publication)) return std::nullopt;

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
        if (!publication.format.mp2) {
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

/// One attempt. A publication to a file has only one: the writer makes a new file, so there is no
/// place where a broken one could be resumed and nothing to ask the user.
PublishOutcome PublishJob::Send(const Publication& publication, const Text& baseName) {
    WriterContext& context = s_.writers.Context();
    JStreamAudioWrite& writer = *s_.writers.Current();
    s_.progress.SetText(u"  Connecting...  ");
    s_.progress.SetRange(publication.ProgressSteps());
    s_.progress.SetText(u"  Publishing audio...  ");

    context.byteSum = 0;
    context.dataBytes = 0;
    context.cancelled = false;
    context.committed = false;
    context.publishedPath.clear();
    writer.Open(baseName);
    const SendEnd end = writer.IsOpen() ? SendClips(publication, writer) : SendEnd::kWriterFailed;
    // What is incomplete must not come to stand under the final name.
    context.cancelled = end != SendEnd::kDone;
    if (end == SendEnd::kDone || end == SendEnd::kCancelled) writer.Finish();
    writer.Close();
    writer.ReleaseEncoder();
    context.publication = {};  // its chunks are as long as the sound
    return Outcome(end);
}

SendEnd PublishJob::SendClips(const Publication& publication, JStreamAudioWrite& writer) {
    ClipSender sender(s_.readers, publication.format, writer, s_.progress);
    for (const ClipPlan& clip : publication.clips) {
        const SendResult result = sender.Send(clip);
        if (result.end != SendEnd::kDone) return result.end;
    }
    return SendEnd::kDone;
}

PublishOutcome PublishJob::Outcome(SendEnd end) {
    WriterContext& context = s_.writers.Context();
    if (end == SendEnd::kCancelled) {
        s_.readers.files.report.Boxes().Show(
            {.text = u"Publishing was cancelled.\nNo file was published.",
             .title = u"Info",
             .icon = BoxIcon::kInformation});
        return PublishOutcome::kCancelled;
    }
    if (end != SendEnd::kDone || !context.committed) return PublishOutcome::kFailed;
    publishedPath_ = context.publishedPath;
    return PublishOutcome::kPublished;
}

}  // namespace orma
