#include "audio/files/wr_mp2.h"

#include <utility>

namespace orma {

bool JStreamWrMP2::StartFeed(JStreamAudioWrite& writer, std::uint32_t inputRate,
                             Mp2Pipeline::FrameWatch frames) {
    writer_ = &writer;
    const auto output = [this](ByteSpan block) {
        if (writer_) writer_->WriteEncoded(block.data(), static_cast<std::uint32_t>(block.size()));
    };
    const AudioState& audio = context_.audio;
    if (!audio.bitrate.IsLegalFor(audio.stereo))
        context_.files.report.ShowError(u"Illegal bitrate");
    feeding_ = context_.encoder.Mp2EncoderInit(output, audio.stereo, inputRate, std::move(frames));
    return feeding_;
}

void JStreamWrMP2::Feed(const void* pcm, std::uint32_t bytes) {
    if (feeding_) context_.encoder.Mp2EncodeSamples({static_cast<const std::uint8_t*>(pcm), bytes});
}

void JStreamWrMP2::FlushFeed() {
    if (!feeding_) return;
    feeding_ = false;
    context_.encoder.Mp2EncodeFlush();
    writer_ = nullptr;
}

void JStreamWrMP2::ReleaseFeed() {
    writer_ = nullptr;
    FlushFeed();
}

std::uint32_t RecordingRate(const AudioState& audio) {
    return audio.sampleRate == 48000 ? 48000 : 44100;
}

std::uint32_t PublicationRate(const AudioState& audio) {
    return audio.mp2 ? 48000 : audio.sampleRate;
}

}  // namespace orma
