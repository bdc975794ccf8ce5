#include "audio/files/audio_write_ftp.h"

namespace orma {

JStreamAudioWriteFTP::JStreamAudioWriteFTP(WriterContext& context)
    : JStreamWrFTP(*context.remote.ftp), JStreamWrMP2(context), context_(context) {}

JStreamAudioWriteFTP::~JStreamAudioWriteFTP() {
    JStreamAudioWriteFTP::Close();
}

void JStreamAudioWriteFTP::Connect() {
    SetDestination(context_.remote.account, context_.remote.extension);
    (void)EnsureConnected();  // shows in IsOpen
}

void JStreamAudioWriteFTP::Open(const Text& name) {
    context_.committed = false;
    SetDestination(context_.remote.account, context_.remote.extension);
    OpenForWriting(name);
    if (IsOpen() && !StartFeed(*this, RecordingRate(context_.audio))) Abandon();
}

void JStreamAudioWriteFTP::Close() {
    FlushFeed();
    const bool whole = IsOpen();
    CloseFile();
    if (whole) context_.committed = CloseResult().Ok();
    CloseAll();
}

}  // namespace orma
