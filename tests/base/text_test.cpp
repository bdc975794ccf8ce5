#include "base/text.h"

#include <gtest/gtest.h>

namespace orma {
namespace {

using namespace std::string_literals;

TEST(Utf8, DecodesEveryLengthOfSequenceAndTakesEveryFileNameInAndOut) {
    EXPECT_EQ(
        FromUtf8("\x7F\xC2\x80\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x9F\x8E\xA4\xF4\x8F\xBF\xBF"),
        u"\u007F\u0080\u07FF\u0800\uFFFF\U0001F3A4\U0010FFFF");
    const std::string name = "nul\0r\xE9sum\xE9 \xC0\xAF \xED\xA0\x80\xED\xB2\x80"s;  // no UTF-8
    EXPECT_EQ(ToUtf8(FromUtf8(name)), name);
    EXPECT_EQ(FromUtf8("\xE2\x82"), (Text{char16_t{0xDCE2}, char16_t{0xDC82}}));
    // A lone surrogate of a foreign text is written in its form of three bytes.
    EXPECT_EQ(ToUtf8(Text{char16_t{0xD800}, u'x', char16_t{0xDBFF}}), "\xED\xA0\x80x\xED\xAF\xBF");
}

TEST(Windows1252, EveryByteSurvivesAndWhatTheCodePageLacksIsOneQuestionMarkEach) {
    std::string all;
    for (int byte = 0; byte < 256; ++byte)
        all.push_back(static_cast<char>(byte));
    EXPECT_EQ(ToWindows1252(FromWindows1252(all)), all);
    EXPECT_EQ(FromWindows1252("\x80\x9F\xE9\x81"), u"\u20AC\u0178\u00E9\u0081");
    EXPECT_EQ(ToWindows1252(u"\u20AC\u0444\U0001F3A4."), "\x80??.");
    EXPECT_EQ(ToWindows1252(u"\u0080"), "?");  // 0x80 is the euro sign
}

}  // namespace
}  // namespace orma
