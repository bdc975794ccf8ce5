#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "base/bytes.h"

namespace orma {

/// Base64 (RFC 4648) of bytes that come piece by piece, in lines of 76 characters and CR LF, as
/// attachments have it. How the input was cut never shows in the output.
class Base64Encoder {
  public:
    /// Forgets everything: the next byte is the first one.
    void Reset();

    /// Encodes `input` and what was left over before. The result is valid until the next call. Up
    /// to two bytes stay behind for the next piece.
    [[nodiscard]] std::string_view Encode(ByteSpan input);

    /// What was left over, with its padding; no line end.
    [[nodiscard]] std::string_view Finish();

  private:
    std::array<std::uint8_t, 3> carry_{};
    std::size_t carried_ = 0;
    std::size_t groupsOnLine_ = 0;
    std::string output_;
};

/// Base64 of a short text, in one line.
[[nodiscard]] std::string Base64(std::string_view text);

/// What a base64 text stands for; decoding ends at padding or at a character that is not base64.
[[nodiscard]] std::string FromBase64(std::string_view text);

}  // namespace orma
