// What an FTP server says.

#include "fuzz/fuzz.h"
#include "platform/curl/ftp_reply.h"

namespace orma::test {

// What a reply keeps, and its conversions: the same however long the input is.
const MemoryBudget kMemoryBudget{.fixedBytes = 96 * 1024, .bytesPerInputByte = 0};

void TryInput(ByteSpan input) {
    const std::string_view bytes(reinterpret_cast<const char*>(input.data()), input.size());
    FtpReply whole;
    whole.Take(bytes);
    FtpReply split;
    for (const char& byte : bytes)
        split.Take({&byte, 1});
    Require(whole.Number() == split.Number() && whole.LastLine() == split.LastLine(),
            "a reply does not depend on how it comes");
    Require(whole.Number() == 0 || (whole.Number() >= 100 && whole.Number() <= 999),
            "a number has three digits");
    const Text words = whole.Words("pw");
    Require(words == split.Words("pw"), "nor do its words");
    Require(words.size() <= FtpReply::kLongestWords, "they are short");
    Require(words.find(u"pw") == Text::npos, "they tell no secret");
    for (const char16_t unit : words)
        Require(unit >= 0x20 || unit == u'\n', "and can be shown");
}

}  // namespace orma::test
