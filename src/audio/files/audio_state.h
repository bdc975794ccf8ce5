#pragma once

#include <cstdint>

#include "audio/files/mp2_bitrate.h"

namespace orma {

/// The sound format in use, shared by recorder, writers, readers and publishing. Plain state, UI
/// thread.
struct AudioState {
    bool mp2 = false;     // recordings are MPEG Layer II, otherwise WAV
    bool stereo = false;  // the encoder's extra mode: two channels
    Mp2Bitrate bitrate;
    unsigned resolutionShift = 2;      // 0..2, see buffer_period.h
    std::uint32_t sampleRate = 44100;  // Hz, of the device or of the file opened last
    std::uint16_t bitsPerSample = 16;  // used when alternativeSampleSize is on
    bool alternativeSampleSize = false;
    bool appendPerBlock = false;    // every block is appended and the file closed again
    bool externalRecorder = false;  // a recorder is attached as a wave device (48000 Hz)

    [[nodiscard]] std::uint16_t Channels() const { return stereo ? 2 : 1; }
    [[nodiscard]] std::uint32_t PeriodsPerSecond() const {
        return orma::PeriodsPerSecond(resolutionShift);
    }
};

}  // namespace orma
