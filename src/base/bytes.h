#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>
#include <type_traits>
#include <vector>

namespace orma {

using Bytes = std::vector<std::uint8_t>;
using ByteSpan = std::span<const std::uint8_t>;

/// What stands in a file as it stands in memory, but for the order of its bytes.
template <class T>
concept Arithmetic = std::is_arithmetic_v<T>;

/// Reads a little-endian integer or IEEE float from `from`, which holds at least sizeof(T) bytes.
template <Arithmetic T>
[[nodiscard]] T LoadLe(const std::uint8_t* from) {
    static_assert(std::endian::native == std::endian::little, "byte order of this processor");
    T value;
    std::memcpy(&value, from, sizeof(T));
    return value;
}

/// Writes `value` little-endian to `to`, which has room for sizeof(T) bytes.
template <Arithmetic T>
void StoreLe(std::uint8_t* to, T value) {
    static_assert(std::endian::native == std::endian::little, "byte order of this processor");
    std::memcpy(to, &value, sizeof(T));
}

/// Copies the 4 characters of a chunk identifier or magic number.
inline void StoreTag(std::uint8_t* to, std::string_view tag) {
    std::memcpy(to, tag.data(), 4);
}

/// True when the 4 bytes at `from` are the tag.
[[nodiscard]] inline bool IsTag(const std::uint8_t* from, std::string_view tag) {
    return std::memcmp(from, tag.data(), 4) == 0;
}

/// The bytes of an 8-bit text, for streams and checksums.
[[nodiscard]] inline ByteSpan AsBytes(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

}  // namespace orma
