#include "stream/base64_encoder.h"

#include <algorithm>

#include <gtest/gtest.h>

namespace orma {
namespace {

/// Encodes in pieces of `piece` bytes.
std::string InPieces(Base64Encoder& encoder, ByteSpan bytes, std::size_t piece) {
    encoder.Reset();
    std::string text;
    for (std::size_t at = 0; at < bytes.size(); at += piece)
        text += encoder.Encode(bytes.subspan(at, std::min(piece, bytes.size() - at)));
    return text += encoder.Finish();
}

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
        for (const std::size_t piece : {1U, 2U, 3U, 5U, 57U, 58U, 400U})
            EXPECT_EQ(InPieces(encoder, input, piece), lines) << size << " by " << piece;
    }
}

TEST(Base64EncoderTest, KnowsTheExamplesOfTheStandardBothWays) {
    const std::pair<std::string, std::string> examples[] = {
        {"", ""}, {"f", "Zg=="}, {"fo", "Zm8="}, {"foobar", "Zm9vYmFy"}, {"\xfb\xff\xbf", "+/+/"}};
    for (const auto& [text, encoded] : examples) {
        EXPECT_EQ(Base64(text), encoded);
        EXPECT_EQ(FromBase64(encoded), text);
    }
    EXPECT_EQ(FromBase64("Zm9v\r\nZg=="), "foo") << "whatever is not of the alphabet ends it";
}

}  // namespace
}  // namespace orma
