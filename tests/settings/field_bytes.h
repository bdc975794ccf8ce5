#pragma once

#include <string_view>

#include "base/bytes.h"
#include "base/text.h"

namespace orma::test {

/// Builds the bytes of a settings file field by field.
struct FieldBytes {
    FieldBytes& Tag(std::string_view tag) {
        bytes.insert(bytes.end(), tag.begin(), tag.end());
        return *this;
    }
    FieldBytes& B(std::uint32_t value) { return Number(value, 1); }
    FieldBytes& S(std::uint32_t value) { return Number(value, 2); }
    FieldBytes& L(std::uint32_t value) { return Number(value, 4); }
    FieldBytes& T(TextView text) {
        L(static_cast<std::uint32_t>(text.size()));
        for (const char16_t unit : text)
            S(unit);
        if (!text.empty()) S(0);
        return *this;
    }
    FieldBytes& Number(std::uint32_t value, int width) {
        for (int i = 0; i < width; ++i)
            bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
        return *this;
    }

    Bytes bytes;
};

}  // namespace orma::test
