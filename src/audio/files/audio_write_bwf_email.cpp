#include "audio/files/audio_write_bwf_email.h"

#include "audio/files/bwf_output.h"

namespace orma {

JStreamAudioWriteBWFEMAIL::JStreamAudioWriteBWFEMAIL(WriterContext& context)
    : JStreamEMAIL(*context.remote.mail), JStreamWrMP2(context), context_(context) {}

JStreamAudioWriteBWFEMAIL::~JStreamAudioWriteBWFEMAIL() {
    ReleaseFeed();
    AbandonMail();
}

void JStreamAudioWriteBWFEMAIL::Open(const Text& /*name*/) {
    finished_ = false;
    context_.committed = false;
    context_.byteSum = 0;
    context_.dataBytes = 0;
    const RemoteDestination& remote = context_.remote;
    if (!OpenMail(remote.delivery, remote.message)) return;
    WriteMpegHead(*this, context_);
    if (!StartFeed(*this, PublicationRate(context_.audio))) AbandonMail();
}

void JStreamAudioWriteBWFEMAIL::WriteSamples(const void* pcm, std::uint32_t bytes) {
    if (context_.encoder.SetInputRate(PublicationRate(context_.audio)))
        Feed(pcm, bytes);
    else
        AbandonMail();
}

void JStreamAudioWriteBWFEMAIL::WriteEncoded(const void* data, std::uint32_t bytes) {
    WriteAudioData(*this, context_, {static_cast<const std::uint8_t*>(data), bytes});
}

void JStreamAudioWriteBWFEMAIL::Finish() {
    FlushFeed();
    if (!IsOpen()) return;
    (void)WriteTrailingChunks(*this, context_);
    finished_ = IsOpen();
}

void JStreamAudioWriteBWFEMAIL::Close() {
    ReleaseFeed();
    if (finished_)
        context_.committed = CloseMail();
    else
        AbandonMail();
    finished_ = false;
}

}  // namespace orma
