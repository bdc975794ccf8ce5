// A publication of a sound take beside which any level file may lie: marks become cue lines, cuts
// leave frames out, levels become the peak envelope.

#include "audio/files/vu_file.h"
#include "fuzz/project_desk.h"
#include "publish/publish_job.h"
#include "publish/verify.h"
#include "support/quiet_ports.h"

namespace orma::test {

// The encoder and decoder; the take, which at the lowest resolution has 800 bytes for each level,
// its publication while that grows, and the verifier's peaks of it; a cue line of 40 characters for
// each mark, in a report that is put together and copied.
const MemoryBudget kMemoryBudget{.fixedBytes = 512 * 1024, .bytesPerInputByte = 4096};

namespace {

class NoPublishDialogs : public PublishDialogs {
  public:
    [[nodiscard]] bool ShowEmailDialog(EmailDialog&) override { return false; }
    [[nodiscard]] bool ShowFtpDialog(FtpDialog&) override { return false; }
};

}  // namespace

void TryInput(ByteSpan bytes) {
    const std::optional<LevelSheet> sheet = DecodeVuFile(bytes);
    if (!sheet || sheet->levels.empty()) return;
    const std::size_t frames =
        sheet->levels.size() * 125 / (3 * PeriodsPerSecond(sheet->resolutionShift)) + 2;
    const Bytes take = SilentFrames(frames, 96, {0xFF, 0xFD, 0x14, 0xC4});  // 32 kbit/s
    FuzzFiles files(bytes.size() + take.size());
    files.storage.Put(u"news/talk00.mp2", take);
    files.storage.Put(u"news/talk00.jvu", bytes);

    ProjectDesk desk(files);
    AudioState& audio = desk.audio;
    audio.mp2 = true;
    audio.resolutionShift = sheet->resolutionShift;
    audio.bitrate.SetMp2Bitrate(0, files.report);
    Mp2Pipeline encoder(audio, files.report);
    WriterContext context{.files = files.services, .audio = audio, .encoder = encoder};
    context.recordingFolder = u"news/";
    WriterSlot writers(context);
    desk.project.SetPath(u"news/", u"talk");
    NoProgress progress;
    ClipEntry clip;
    clip.name = u"talk00";
    clip.folder = u"news/";
    desk.clips.Append(clip);
    clip.begin = 1;
    clip.end = 0xFFFFFFFF;
    desk.clips.Append(clip);

    PublishPatience patience(progress, desk.clock);
    SettingsRecord settings;
    PublishChoices choices;
    NoPublishDialogs dialogs;
    const Text programFolder = u"program/";
    PublishJob job({{files.services, audio, desk.decoder},
                    desk.clock,
                    writers,
                    desk.project,
                    progress,
                    patience,
                    {settings, choices, files.services, programFolder},
                    dialogs});
    const PublishOutcome outcome = job.Publish(desk.clips, u"talk", true, false);
    const Bytes* file = files.storage.Find(u"news/pub_talk.wav");
    Require((outcome == PublishOutcome::kPublished) == (file != nullptr), "whole or not there");
    Require(files.storage.Find(u"news/pub_talk.wav.tmp") == nullptr, "nothing is left over");
    if (file == nullptr) return;
    for (const Finding& finding : VerifyPublishedFile(files.services, job.PublishedPath()).findings)
        // The levels are anything, the sound is silence: they need not fit each other.
        Require(finding.text.starts_with("value "), finding.text.c_str());
}

}  // namespace orma::test
