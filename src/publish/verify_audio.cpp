#include "publish/verify_audio.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <numeric>

#include "audio/files/buffer_period.h"
#include "audio/files/mp2_decoder.h"
#include "audio/files/mp2_header.h"

namespace orma {
namespace {

constexpr std::uint32_t kBlockBytes = 65536;

/// Decodes the frames of one file in order. A frame whose header is wrong must not reach the
/// decoder and must not shift the ones behind it: it counts as silence and decoding starts again.
class FrameDecoder {
  public:
    FrameDecoder(const PublicationFormat& format, Storage& storage)
        : format_(format), decoder_(audio_, storage, {}) {}

    [[nodiscard]] bool HeaderFits(ByteSpan frame) const {
        const Mp2Header header = HeaderOf(frame);
        const bool modeFits = format_.channels == 2 ? header.Mode() == 0 : header.Mode() == 3;
        return header.IsLayer2() && header.SamplingBits() == 1 && !header.HasPadding() &&
               header.FrameBytes(0) == format_.frameBytes && modeFits;
    }

    /// Decodes `frame`, whose header fits; `next` begins with the next frame's header, if there is
    /// one that fits. Empty when the frame cannot be decoded.
    [[nodiscard]] std::span<const std::int16_t> Decode(ByteSpan frame, ByteSpan next) {
        if (!decoder_.IsActive()) decoder_.Mp2DecoderStart(HeaderOf(frame));
        const std::span<std::uint8_t> space = decoder_.FrameSpace();
        if (space.size() != frame.size()) return Restart();
        std::ranges::copy(frame.subspan(4), space.begin());
        const bool goesOn = next.size() >= 4 && HeaderFits(next);
        std::ranges::copy((goesOn ? next : frame).first(4), space.end() - 4);
        unsigned channels = 0;
        const std::size_t samples = decoder_.Mp2DecodeFrame(samples_, channels);
        if (!goesOn) decoder_.Mp2DecoderFinish();
        if (samples != kMp2FrameSamples || channels != format_.channels) return Restart();
        return std::span(samples_).first(samples * channels);
    }

  private:
    [[nodiscard]] static Mp2Header HeaderOf(ByteSpan frame) {
        return {{frame[0], frame[1], frame[2], frame[3]}};
    }

    [[nodiscard]] std::span<const std::int16_t> Restart() {
        decoder_.Mp2DecoderFinish();
        return {};
    }

    const PublicationFormat& format_;
    AudioState audio_;
    Mp2Decoder decoder_;
    std::array<std::int16_t, 2 * kMp2FrameSamples> samples_{};
};

void CheckFrames(VerifySource& source, Storage& storage, const FileChunk& data,
                 const PublicationFormat& format, SoundFacts& facts, VerifyNotes& notes) {
    const std::size_t before = notes.Found();
    const std::uint32_t frames = data.size / format.frameBytes;
    if (data.size % format.frameBytes != 0)
        notes.Find(data.offset + 4, Format("%u bytes of data are no whole number of frames of %u",
                                           data.size, format.frameBytes));
    FrameDecoder decoder(format, storage);
    const std::array<std::int16_t, 2 * kMp2FrameSamples> silence{};
    Bytes buffer(format.frameBytes + 4);  // a frame and the next one's header
    for (std::uint32_t i = 0; i < frames; ++i) {
        const std::uint64_t at = data.Content() + std::uint64_t{i} * format.frameBytes;
        const bool isLast = i + 1 == frames;
        const ByteSpan whole(buffer);
        if (!source.Read(at, std::span(buffer).first(format.frameBytes + (isLast ? 0U : 4U)))) {
            notes.Find(at, "cannot be read");
            return;
        }
        const ByteSpan frame = whole.first(format.frameBytes);
        facts.byteSum = std::accumulate(frame.begin(), frame.end(), facts.byteSum);
        std::span<const std::int16_t> sound;
        if (!decoder.HeaderFits(frame)) {
            notes.Find(at, Format("frame %u: header %02X %02X %02X %02X does not fit", i, frame[0],
                                  frame[1], frame[2], frame[3]));
        } else {
            sound = decoder.Decode(frame, isLast ? ByteSpan() : whole.last(4));
            if (sound.empty()) notes.Find(at, Format("frame %u cannot be decoded", i));
        }
        if (sound.empty()) sound = std::span(silence).first(kMp2FrameSamples * format.channels);
        facts.peaks.Add(sound, format.channels);
    }
    facts.samples = std::uint64_t{frames} * kMp2FrameSamples;
    // A rest that is no frame was sent, and summed, all the same.
    Bytes rest(data.size % format.frameBytes);
    if (source.Read(data.Content() + std::uint64_t{frames} * format.frameBytes, rest))
        facts.byteSum = std::accumulate(rest.begin(), rest.end(), facts.byteSum);
    if (notes.Found() == before)
        notes.Fact(Format("%u frames of %u bytes, all headers fit, all decoded", frames,
                          format.frameBytes));
}

void CheckPcm(VerifySource& source, const FileChunk& data, const PublicationFormat& format,
              SoundFacts& facts, VerifyNotes& notes) {
    const std::uint32_t sampleBytes = 2U * format.channels;
    notes.Require(data.size % sampleBytes == 0, data.offset + 4, "no whole number of samples");
    Bytes block(kBlockBytes);
    std::vector<std::int16_t> samples(kBlockBytes / 2);
    for (std::uint32_t done = 0; done < data.size;) {
        const std::uint32_t count = std::min(kBlockBytes, data.size - done);
        const auto part = std::span(block).first(count);
        if (!source.Read(data.Content() + done, part)) {
            notes.Find(data.Content() + done, "cannot be read");
            return;
        }
        facts.byteSum = std::accumulate(part.begin(), part.end(), facts.byteSum);
        const std::size_t whole = count / sampleBytes * format.channels;
        for (std::size_t i = 0; i < whole; ++i)
            samples[i] = LoadLe<std::int16_t>(&part[2 * i]);
        facts.peaks.Add(std::span(samples).first(whole), format.channels);
        done += count;
    }
    facts.samples = data.size / sampleBytes;
}

}  // namespace

void SoundPeaks::Add(std::span<const std::int16_t> samples, unsigned channels) {
    for (std::size_t i = 0; i + channels <= samples.size(); i += channels) {
        if (inStep_ % kStepSamples == 0) {
            absolute.push_back(0);
            positive.push_back(0);
            inStep_ = 0;
        }
        ++inStep_;
        for (unsigned channel = 0; channel < channels; ++channel) {
            const int sample = samples[i + channel];
            const auto magnitude = static_cast<std::uint16_t>(std::abs(sample));
            absolute.back() = std::max(absolute.back(), magnitude);
            if (sample > 0) positive.back() = std::max(positive.back(), magnitude);
        }
    }
}

SoundFacts CheckAudio(VerifySource& source, Storage& storage, const FileChunk& data,
                      const PublicationFormat& format, VerifyNotes& notes) {
    SoundFacts facts;
    if (format.mp2)
        CheckFrames(source, storage, data, format, facts, notes);
    else
        CheckPcm(source, data, format, facts, notes);
    return facts;
}

}  // namespace orma
