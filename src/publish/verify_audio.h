#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "audio/files/audio_state.h"
#include "publish/chunk_map.h"
#include "publish/coding_history.h"

namespace orma {

/// The peaks of 48000 Hz sound in steps of 96 samples (2 ms), which divide both an MP2 frame and
/// every buffer period. Over both channels, 0..32768.
struct SoundPeaks {
    static constexpr std::uint32_t kStepSamples = 96;

    std::vector<std::uint16_t> absolute;  // of both signs
    std::vector<std::uint16_t> positive;  // of positive samples, what 24-bit recordings go by

    /// Takes the next interleaved samples.
    void Add(std::span<const std::int16_t> samples, unsigned channels);

  private:
    std::uint32_t inStep_ = 0;  // samples per channel in the last step
};

/// What the audio data of a published file turned out to be.
struct SoundFacts {
    std::uint32_t byteSum = 0;  // 32-bit sum of all bytes
    std::uint64_t samples = 0;  // per channel
    SoundPeaks peaks;
};

/// Reads the whole `data` chunk in blocks: sums its bytes, checks every MP2 frame header, decodes,
/// takes the peaks. Memory: about a tenth of MP2 data, a fiftieth of PCM.
[[nodiscard]] SoundFacts CheckAudio(VerifySource& source, Storage& storage, const FileChunk& data,
                                    const PublicationFormat& format, VerifyNotes& notes);

}  // namespace orma
