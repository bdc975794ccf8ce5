#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include <gtest/gtest.h>

#include "support/byte_builder.h"
#include "support/temp_folder.h"

namespace orma::test {

/// `count` samples of which no stretch repeats soon: consecutive multiples of an odd number.
[[nodiscard]] inline std::vector<std::int16_t> Ramp(std::size_t count) {
    std::vector<std::int16_t> samples(count);
    std::uint16_t value = 12345;
    for (std::int16_t& sample : samples)
        sample = static_cast<std::int16_t>(value += 40503);
    return samples;
}

/// A 16-bit PCM WAV file with a header of 44 bytes.
inline void WriteSoundFile(const Text& path, std::uint16_t channels, std::uint32_t hz,
                           std::span<const std::int16_t> samples) {
    const auto dataBytes = static_cast<std::uint32_t>(samples.size_bytes());
    const auto align = static_cast<std::uint16_t>(2 * channels);
    ByteBuilder file;
    file.Put("RIFF").U32(36 + dataBytes).Put("WAVE").Put("fmt ").U32(16).U16(1).U16(channels);
    file.U32(hz).U32(hz * align).U16(align).U16(16).Put("data").U32(dataBytes);
    file.Put({reinterpret_cast<const std::uint8_t*>(samples.data()), dataBytes});
    WriteFileBytes(path, file.bytes);
}

/// Little-endian bytes as samples.
[[nodiscard]] inline std::vector<std::int16_t> AsSamples(ByteSpan bytes) {
    std::vector<std::int16_t> samples(bytes.size() / 2);
    if (!samples.empty()) std::memcpy(samples.data(), bytes.data(), samples.size() * 2);
    return samples;
}

/// The samples of such a file; fails the test when the header does not fit the file.
[[nodiscard]] inline std::vector<std::int16_t> ReadSoundFile(const Text& path) {
    const Bytes file = ReadFileBytes(path);
    if (file.size() < 44) {
        ADD_FAILURE() << "no WAV header";
        return {};
    }
    EXPECT_TRUE(IsTag(&file[0], "RIFF") && IsTag(&file[8], "WAVE") && IsTag(&file[36], "data"));
    EXPECT_EQ(LoadLe<std::uint32_t>(&file[4]), file.size() - 8);
    EXPECT_EQ(LoadLe<std::uint32_t>(&file[40]), file.size() - 44);
    return AsSamples(ByteSpan(file).subspan(44));
}

}  // namespace orma::test
