#include "audio/files/audio_write_bwf_wav_file.h"

#include <algorithm>
#include <cstring>

#include "audio/files/bwf_output.h"
#include "audio/files/wr_mp2.h"

namespace orma {
namespace {

constexpr std::uint32_t kSampleBytes = 2;

}  // namespace

JStreamAudioWriteBWFWavFile::JStreamAudioWriteBWFWavFile(WriterContext& context)
    : JStreamFile(context.files), context_(context), published_(context) {}

JStreamAudioWriteBWFWavFile::~JStreamAudioWriteBWFWavFile() {
    published_.End(*this);
}

void JStreamAudioWriteBWFWavFile::Open(const Text& name) {
    if (!published_.Begin(*this, name)) return;
    channels_ = context_.audio.Channels();
    held_ = 0;
    context_.staging.Restart();
    context_.dataBytes = 0;

    PcmFormatBlock format;
    format.channels = channels_;
    format.blockAlign = context_.wavTemplate.blockAlign;
    format.factSamples = context_.publication.mpeg.factSamples;
    WriteBextHead(*this, context_);
    const auto block = format.Encode();
    Write(block.data(), block.size());
    context_.dataStart = GetPosition();
    // What could not be converted would be missing unnoticed.
    if (!converter_.Start(PublicationRate(context_.audio))) published_.End(*this);
}

void JStreamAudioWriteBWFWavFile::WriteSamples(const void* pcm, std::uint32_t bytes) {
    if (!IsOpen()) return;
    const std::uint32_t rate = PublicationRate(context_.audio);
    if (rate != converter_.InputRate() && !converter_.Start(rate)) {
        JStreamFile::Close();
        return;
    }

    const auto* from = static_cast<const std::uint8_t*>(pcm);
    std::size_t samples = bytes / kSampleBytes / channels_;
    while (samples > 0) {
        const std::size_t count = std::min(samples, kMp2FrameSamples - held_);
        const std::size_t copied = count * channels_ * kSampleBytes;
        std::memcpy(&assembler_[held_ * channels_], from, copied);
        from += copied;
        samples -= count;
        held_ += count;
        if (held_ == kMp2FrameSamples) ConvertFrame();
    }
}

void JStreamAudioWriteBWFWavFile::ConvertFrame() {
    const std::size_t used = converter_.Convert(
        std::span(assembler_).first(kMp2FrameSamples * channels_), channels_, left_, right_);
    std::copy(assembler_.begin() + static_cast<std::ptrdiff_t>(used * channels_),
              assembler_.begin() + kMp2FrameSamples * channels_, assembler_.begin());
    held_ -= std::min(held_, used);
    for (std::size_t i = 0; i < kMp2FrameSamples; ++i) {
        interleaved_[i * channels_] = left_[i];
        if (channels_ == 2) interleaved_[i * 2 + 1] = right_[i];
    }
    const ByteSpan sound(reinterpret_cast<const std::uint8_t*>(interleaved_.data()),
                         kMp2FrameSamples * channels_ * kSampleBytes);
    context_.staging.Add(sound, [this](ByteSpan block) { PutBlock(block); });
}

void JStreamAudioWriteBWFWavFile::PutBlock(ByteSpan block) {
    WriteAudioData(*this, context_, block);
}

void JStreamAudioWriteBWFWavFile::Finish() {
    if (!IsOpen()) return;
    while (held_ > 0) {
        std::fill(assembler_.begin() + static_cast<std::ptrdiff_t>(held_ * channels_),
                  assembler_.end(), std::int16_t{0});
        ConvertFrame();
    }
    context_.staging.Flush([this](ByteSpan block) { PutBlock(block); });
    const std::uint32_t trailing = WriteTrailingChunks(*this, context_);
    // In the 44 bytes of `fmt `, `fact` and `data` head, the sample count stands 12 bytes before
    // the data.
    PatchBwfSizes(*this, context_, trailing, context_.dataBytes / kSampleBytes / channels_,
                  context_.dataStart - 12);
    published_.SetFinished();
}

void JStreamAudioWriteBWFWavFile::Close() {
    published_.End(*this);
}

}  // namespace orma
