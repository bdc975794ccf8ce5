#include "audio/files/audio_write_bwf_mp2_file.h"

#include "audio/files/bwf_output.h"

namespace orma {

JStreamAudioWriteBWFMP2File::JStreamAudioWriteBWFMP2File(WriterContext& context)
    : JStreamWrMP2File(context), JStreamWrMP2(context), context_(context), published_(context) {}

JStreamAudioWriteBWFMP2File::~JStreamAudioWriteBWFMP2File() {
    JStreamAudioWriteBWFMP2File::Close();
}

void JStreamAudioWriteBWFMP2File::Open(const Text& name) {
    if (!published_.Begin(*this, name)) {
        ReleaseFeed();
        return;
    }
    context_.dataBytes = 0;
    WriteMpegHead(*this, context_);
    gathered_.Start(context_.dataStart);
    // Without an encoder PCM would vanish unnoticed.
    if (!StartFeed(*this, PublicationRate(context_.audio))) Close();
}

void JStreamAudioWriteBWFMP2File::WriteSamples(const void* pcm, std::uint32_t bytes) {
    if (context_.encoder.SetInputRate(PublicationRate(context_.audio)))
        Feed(pcm, bytes);
    else
        JStreamFile::Close();
}

void JStreamAudioWriteBWFMP2File::WriteEncoded(const void* data, std::uint32_t bytes) {
    const ByteSpan block(static_cast<const std::uint8_t*>(data), bytes);
    CountAudioData(context_, block);
    gathered_.Put(*this, block);
}

void JStreamAudioWriteBWFMP2File::Finish() {
    FlushFeed();
    gathered_.Flush(*this);
    if (!IsOpen()) return;
    const std::uint32_t trailing = WriteTrailingChunks(*this, context_);
    // The head counted what the job expected to send. Should the clips have given another number
    // of frames, the file says what it holds.
    const MpegFormatBlock& expected = context_.publication.mpeg;
    if (context_.dataBytes != expected.dataSize && expected.blockAlign > 0) {
        const std::uint32_t frames = context_.dataBytes / expected.blockAlign;
        // The sample count stands 32 bytes before the data: `mext` and the `data` head follow it.
        PatchBwfSizes(*this, context_, trailing, frames * kMp2FrameSamples,
                      context_.dataStart - 32);
    }
    published_.SetFinished();
}

void JStreamAudioWriteBWFMP2File::Close() {
    ReleaseFeed();
    published_.End(*this);
}

}  // namespace orma
