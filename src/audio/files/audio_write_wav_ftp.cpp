#include "audio/files/audio_write_wav_ftp.h"

#include <algorithm>
#include <array>

namespace orma {

JStreamAudioWriteWavFTP::JStreamAudioWriteWavFTP(WriterContext& context)
    : LiveUpload(context), context_(context), audio_(context.audio), local_(context) {}

JStreamAudioWriteWavFTP::~JStreamAudioWriteWavFTP() {
    JStreamAudioWriteWavFTP::Close();
}

void JStreamAudioWriteWavFTP::Open(const Text& name) {
    FlushFeed();
    CloseLive();
    local_.OpenTake(name);
    if (!local_.IsHealthy()) return;
    // An empty remote file helps nobody: the encoder must be there first.
    if (StartFeed(*this, audio_.sampleRate)) {
        OpenLive(name);
    } else if (audio_.bitrate.IsLegalFor(audio_.stereo)) {
        const auto rate = static_cast<unsigned>(audio_.sampleRate);
        context_.files.report.ShowError(FormatText("No MP2 of %u Hz: ", rate) +
                                        u"the take is not uploaded");
    }
}

void JStreamAudioWriteWavFTP::WriteSamples(const void* pcm, std::uint32_t bytes) {
    local_.WriteTake({static_cast<const std::uint8_t*>(pcm), bytes});
    if (audio_.alternativeSampleSize && audio_.bitsPerSample == 24)
        FeedUpperBytes({static_cast<const std::uint8_t*>(pcm), bytes});
    else
        Feed(pcm, bytes);
}

/// The encoder takes 16 bits of each 24-bit sample, as an MP2 take of the same input does.
void JStreamAudioWriteWavFTP::FeedUpperBytes(ByteSpan pcm) {
    std::array<std::uint8_t, 4096> upper;
    while (pcm.size() >= 3) {
        const std::size_t samples = std::min(pcm.size() / 3, upper.size() / 2);
        for (std::size_t i = 0; i < samples; ++i) {
            upper[2 * i] = pcm[3 * i + 1];
            upper[2 * i + 1] = pcm[3 * i + 2];
        }
        Feed(upper.data(), static_cast<std::uint32_t>(2 * samples));
        pcm = pcm.subspan(3 * samples);
    }
}

void JStreamAudioWriteWavFTP::Close() {
    FlushFeed();
    CloseLive();
    local_.CloseTake();
}

}  // namespace orma
