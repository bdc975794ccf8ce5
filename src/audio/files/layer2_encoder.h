#pragma once

#include <array>
#include <cstdint>
#include <memory>

#include "base/bytes.h"

struct twolame_options_struct;

namespace orma {

/// The Layer II encoder of the twolame library as this system drives it: 48000 Hz, one channel or
/// plain stereo, constant bit rate, psychoacoustic model 3, no padding, no CRC, no emphasis. An
/// instance is one stream. One thread at a time.
class Layer2Encoder {
  public:
    /// An encoder for a pair that Mp2Bitrate::IsLegalFor allows; null when the library refuses it
    /// or memory is short.
    [[nodiscard]] static std::unique_ptr<Layer2Encoder> Create(std::uint32_t bitsPerSecond,
                                                               bool stereo);

    ~Layer2Encoder();
    Layer2Encoder(const Layer2Encoder&) = delete;
    Layer2Encoder& operator=(const Layer2Encoder&) = delete;

    /// Encodes 1152 samples per channel (`right` is not looked at in one channel) into one whole
    /// frame, valid until the next call; empty when the library fails.
    [[nodiscard]] ByteSpan EncodeFrame(const std::int16_t* left, const std::int16_t* right);

  private:
    explicit Layer2Encoder(twolame_options_struct* options) : options_(options) {}

    twolame_options_struct* options_;
    std::array<std::uint8_t, 2048> frame_{};  // the largest frame, 256 kbit/s, has 768 bytes
};

}  // namespace orma
