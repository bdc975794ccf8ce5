#include "publish/audio_delivery.h"

#include <utility>

#include "publish/audio_state_keeper.h"
#include "stream/jstream_wr_ftp.h"

namespace orma {

AudioDelivery::AudioDelivery(AudioDeliveryServices services, const Publication& publication,
                             AudioDeliveryTerms terms)
    : s_(services), publication_(publication), terms_(std::move(terms)) {}

bool AudioDelivery::IsRemote() const {
    return terms_.writer == WriterKind::kBwfFtp || terms_.writer == WriterKind::kBwfEmail;
}

bool AudioDelivery::CanResume() const {
    return terms_.writer == WriterKind::kBwfFtp && publication_.storedFrames;
}

PublishOutcome AudioDelivery::Run(const Text& baseName) {
    s_.writers.SelectWriter(terms_.writer);
    if (s_.writers.Current() == nullptr) {
        s_.readers.files.report.ShowError(u"There is no network.");
        return PublishOutcome::kFailed;
    }
    Context().bytesSent = 0;
    s_.patience.Start();
    const PublishOutcome outcome = Attempts(baseName);
    Writer().ReleaseEncoder();
    Context().publication = {};  // its chunks are as long as the sound
    return outcome;
}

PublishOutcome AudioDelivery::Attempts(const Text& baseName) {
    for (bool first = true;; first = false) {
        const std::uint64_t before = Context().bytesSent;
        const AttemptEnd end = Attempt(baseName, first);
        if (end == AttemptEnd::kOver) return outcome_;
        s_.patience.Start();
        if (s_.progress.IsCancelled()) return Cancelled();
        if (end == AttemptEnd::kBroken ? !WantsToGoOn() : !terms_.autoResume) return Broken(end);
        if (Context().bytesSent <= before && !s_.patience.Wait(kPauseMs)) return Cancelled();
    }
}

AudioDelivery::AttemptEnd AudioDelivery::Attempt(const Text& baseName, bool first) {
    s_.progress.SetText(u"  Connecting...  ");
    s_.progress.SetRange(publication_.ProgressSteps());
    outcome_ = PublishOutcome::kFailed;
    sentAll_ = false;
    const int answer = OpenWriter(baseName, first);
    opened_ = Writer().IsOpen();
    if (answer == JStreamWrFTP::kOffsetRefused) {
        s_.readers.files.report.ShowError(u"Resume not possible\non this server.");
        Writer().Close();
        return AttemptEnd::kOver;
    }
    if (answer == JStreamWrFTP::kNoConnection) {
        Writer().Close();
        return AttemptEnd::kNoConnection;
    }
    s_.progress.SetText(u"  Publishing audio...  ");
    s_.patience.Start(true);
    const SendEnd end = opened_ ? SendClips() : SendEnd::kWriterFailed;
    if (end == SendEnd::kDone) return EndWhole();
    // What is incomplete must not come to stand under a local file's final name.
    Context().cancelled = true;
    if (end == SendEnd::kCancelled) return EndCancelled();
    Writer().Close();
    return end == SendEnd::kUnreadable ? AttemptEnd::kOver : AttemptEnd::kBroken;
}

/// The writer takes what it encodes with from the audio state while it opens; the readers need the
/// recordings' own values there before and after.
int AudioDelivery::OpenWriter(const Text& baseName, bool first) {
    AudioState& audio = s_.readers.audio;
    const AudioStateKeeper keeper(audio);
    audio.bitrate = terms_.bitrate;
    audio.stereo = publication_.format.channels == 2;
    WriterContext& context = Context();
    context.cancelled = false;
    context.committed = false;
    context.unverified = false;
    context.publishedPath.clear();
    context.byteSum = 0;
    context.dataBytes = 0;
    if (!first) return Writer().Resume(baseName, static_cast<std::uint32_t>(context.bytesSent));
    context.bytesSent = 0;
    context.bytesHeld = 0;
    Writer().Open(baseName);
    return 0;
}

SendEnd AudioDelivery::SendClips() {
    ClipSender sender(s_.readers, publication_, Writer(), Context(), terms_.totalBytes,
                      s_.progress);
    for (const ClipPlan& clip : publication_.clips)
        if (const SendEnd end = sender.Send(clip); end != SendEnd::kDone) return end;
    return SendEnd::kDone;
}

AudioDelivery::AttemptEnd AudioDelivery::EndWhole() {
    WriterContext& context = Context();
    ErrorReporter& report = s_.readers.files.report;
    Writer().Finish();
    sentAll_ = Writer().IsOpen();
    // A head that went out before the sound can no longer be made true.
    const bool headIsTrue = !IsRemote() || !context.remote.broadcastWave ||
                            context.dataBytes == context.publication.mpeg.dataSize;
    Writer().Close();
    if (context.committed && headIsTrue) {
        s_.progress.SetBytes(terms_.totalBytes, terms_.totalBytes);
        outcome_ = PublishOutcome::kPublished;
        return AttemptEnd::kOver;
    }
    if (!context.committed && !context.unverified) {
        outcome_ = PublishOutcome::kFailed;
        return IsRemote() ? AttemptEnd::kBroken : AttemptEnd::kOver;
    }
    report.ShowError(headIsTrue
                         ? u"The publication is not verified:\nthe server does not confirm\n"
                           u"the size of the file."
                         : u"The publication is not verified:\nits sound has another length\n"
                           u"than its head says.");
    outcome_ = PublishOutcome::kUnverified;
    return AttemptEnd::kOver;
}

/// Ends the file as far as it came, as a receiver would want it.
AudioDelivery::AttemptEnd AudioDelivery::EndCancelled() {
    Writer().Finish();
    Writer().Close();
    outcome_ = Cancelled();
    return AttemptEnd::kOver;
}

bool AudioDelivery::WantsToGoOn() {
    if (!CanResume()) return false;
    if (terms_.autoResume) return true;
    return s_.readers.files.report.Boxes().Show({.text = u"Resume publishing ?",
                                                 .title = u"Publishing interrupted!",
                                                 .icon = BoxIcon::kQuestion,
                                                 .buttons = BoxButtons::kYesNo}) == BoxAnswer::kYes;
}

/// What broke off for good. The streams have reported most of it; some failures make no sound.
PublishOutcome AudioDelivery::Broken(AttemptEnd end) {
    if (end == AttemptEnd::kNoConnection || CanResume() || !IsRemote())
        return PublishOutcome::kFailed;
    ErrorReporter& report = s_.readers.files.report;
    if (sentAll_)
        report.ShowError(u"The publication is not verified:\nthe server does not confirm it.");
    else if (opened_ ? terms_.writer == WriterKind::kBwfEmail || terms_.autoResume
                     : terms_.writer == WriterKind::kBwfFtp && terms_.autoResume)
        report.ShowError(u"Publishing interrupted!");
    return sentAll_ ? PublishOutcome::kUnverified : PublishOutcome::kFailed;
}

PublishOutcome AudioDelivery::Cancelled() {
    const bool nothing = Context().bytesSent == 0;
    const char16_t* what = u"The publication is incomplete.";
    if (!IsRemote())
        what = u"No file was published.";
    else if (terms_.writer == WriterKind::kBwfEmail ? !Context().committed : nothing)
        what = u"Nothing was published.";
    s_.readers.files.report.Boxes().Show({.text = Text(u"Publishing was cancelled.\n") + what,
                                          .title = u"Info",
                                          .icon = BoxIcon::kInformation});
    return PublishOutcome::kCancelled;
}

}  // namespace orma
