#include "audio/files/audio_write_mp2_ftp.h"

namespace orma {

JStreamAudioWriteMP2FTP::JStreamAudioWriteMP2FTP(WriterContext& context)
    : LiveUpload(context), audio_(context.audio), local_(context) {}

JStreamAudioWriteMP2FTP::~JStreamAudioWriteMP2FTP() {
    JStreamAudioWriteMP2FTP::Close();
}

void JStreamAudioWriteMP2FTP::Open(const Text& name) {
    if (local_.RefuseWhileOpen()) {
        Close();
        return;
    }
    local_.OpenTake(name);
    const auto keep = [this](ByteSpan frame) { local_.KeepFrame(frame); };
    if (!StartFeed(*this, RecordingRate(audio_), keep)) local_.CloseTake();
    if (local_.IsHealthy()) OpenLive(name);
}

void JStreamAudioWriteMP2FTP::WriteEncoded(const void* data, std::uint32_t bytes) {
    local_.PutTake({static_cast<const std::uint8_t*>(data), bytes});
    Write(data, bytes);
}

void JStreamAudioWriteMP2FTP::Close() {
    FlushFeed();
    CloseLive();
    local_.CloseTake();
}

}  // namespace orma
