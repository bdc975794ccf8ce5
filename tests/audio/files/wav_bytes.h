#pragma once

#include "support/byte_builder.h"

namespace orma::test {

/// The fields of a plain WAV file; sizes left at -1 follow from the data.
struct WavFields {
    unsigned channels = 1;
    std::uint32_t sampleRate = 44100;
    unsigned bits = 16;
    unsigned blockAlign = 2;
    std::int64_t riffSize = -1;
    std::int64_t dataSize = -1;
};

/// A WAV file with the 44-byte header of the system's takes.
[[nodiscard]] inline Bytes WavBytes(const WavFields& fields, ByteSpan data) {
    const auto size = static_cast<std::int64_t>(data.size());
    const std::int64_t riff = fields.riffSize < 0 ? size + 36 : fields.riffSize;
    const std::int64_t dataSize = fields.dataSize < 0 ? size : fields.dataSize;
    ByteBuilder file;
    file.Put("RIFF").U32(static_cast<std::uint32_t>(riff)).Put("WAVE");
    file.Put("fmt ").U32(16).U16(1).U16(fields.channels).U32(fields.sampleRate);
    file.U32(fields.bits / 8 * fields.channels * fields.sampleRate);
    file.U16(fields.blockAlign).U16(fields.bits);
    file.Put("data").U32(static_cast<std::uint32_t>(dataSize)).Put(data);
    return file.bytes;
}

/// A WAV take of 44100 Hz whose samples say which period of 50 ms they belong to: `first`,
/// `first` + 1 ...
[[nodiscard]] inline Bytes NumberedTake(std::uint32_t periods, std::uint32_t first = 0,
                                        unsigned channels = 1) {
    const std::size_t period = std::size_t{2205} * channels;
    Bytes data(2 * periods * period);
    for (std::size_t i = 0; i < data.size() / 2; ++i)
        StoreLe(&data[2 * i], static_cast<std::uint16_t>(first + i / period));
    return WavBytes({.channels = channels, .blockAlign = 2 * channels}, data);
}

}  // namespace orma::test
