#include "audio/files/audio_write_mp2_file.h"

namespace orma {

JStreamAudioWriteMP2File::JStreamAudioWriteMP2File(WriterContext& context)
    : JStreamWrMP2File(context), JStreamWrMP2(context), audio_(context.audio) {}

JStreamAudioWriteMP2File::~JStreamAudioWriteMP2File() {
    JStreamAudioWriteMP2File::Close();
}

void JStreamAudioWriteMP2File::Open(const Text& name) {
    if (RefuseWhileOpen()) {
        Close();
        return;
    }
    OpenTake(name);
    // A take that nothing would be encoded into must not look healthy.
    const auto keep = [this](ByteSpan frame) { KeepFrame(frame); };
    if (!StartFeed(*this, RecordingRate(audio_), keep)) CloseTake();
}

void JStreamAudioWriteMP2File::Close() {
    FlushFeed();
    CloseTake();
}

void JStreamAudioWriteMP2File::WriteEncoded(const void* data, std::uint32_t bytes) {
    PutTake({static_cast<const std::uint8_t*>(data), bytes});
}

}  // namespace orma
