#pragma once

#include <string_view>

#include "base/bytes.h"

namespace orma::test {

/// Puts a file together field by field, little-endian, so that an expectation reads like the layout
/// it stands for and uses no code under test.
struct ByteBuilder {
    Bytes bytes;

    ByteBuilder& Put(std::string_view text) {
        bytes.insert(bytes.end(), text.begin(), text.end());
        return *this;
    }
    ByteBuilder& Put(ByteSpan raw) {
        bytes.insert(bytes.end(), raw.begin(), raw.end());
        return *this;
    }
    ByteBuilder& U16(unsigned value) { return Number(value, 2); }
    ByteBuilder& U32(std::uint32_t value) { return Number(value, 4); }
    ByteBuilder& Fill(std::size_t count, std::uint8_t value = 0) {
        bytes.insert(bytes.end(), count, value);
        return *this;
    }
    /// The text and as many zeros as make `width` bytes.
    ByteBuilder& Field(std::string_view text, std::size_t width) {
        return Put(text).Fill(width - text.size());
    }

  private:
    ByteBuilder& Number(std::uint32_t value, int width) {
        for (int i = 0; i < width; ++i)
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        return *this;
    }
};

}  // namespace orma::test
