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

}  // namespace orma::test
