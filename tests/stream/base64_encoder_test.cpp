#include "stream/base64_encoder.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace orma {
namespace {

TEST(Base64EncoderTest, CutsNeverShowAndLinesHave76Characters) {
    Bytes bytes(400);
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = static_cast<std::uint8_t>(i * 151);
    Base64Encoder encoder;
    for (const std::size_t size : {0U, 1U, 2U, 3U, 56U, 57U, 58U, 114U, 400U}) {
        const ByteSpan input = ByteSpan(bytes).first(size);
        std::string lines = Base64({reinterpret_cast<const char*>(input.data()), input.size()});
        for (std::size_t line = 0; line < size / 57; ++line)
            lines.insert(78 * line + 76, "\r\n");
        for (const std::size_t piece : {1U, 2U, 3U, 5U, 57U, 58U, 400U}) {
            encoder.Reset();
            std::string text;
            for (std::size_t at = 0; at < size; at += piece)
                text += encoder.Encode(input.subspan(at, std::min(piece, size - at)));
            EXPECT_EQ(text += encoder.Finish(), lines) << size << " by " << piece;
        }
    }
}

}  // namespace
}  // namespace orma
