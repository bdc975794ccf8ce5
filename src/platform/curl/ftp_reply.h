#pragma once

#include <string>
#include <string_view>

#include "base/text.h"

namespace orma {

/// Collects the replies on an FTP control connection (RFC 959, 4.2), one after the other. A reply
/// ends, as libcurl has it, at the first line of three digits and a space; the lines before it
/// belong to it. Takes whatever a server sends, in bounded memory.
class FtpReply {
  public:
    /// Longest text that is shown, in characters, and the bytes that are kept for it.
    static constexpr std::size_t kLongestWords = 799;
    static constexpr std::size_t kKeptBytes = 4 * kLongestWords;

    /// Takes the next bytes; they may end anywhere in a line. Behind a whole reply the next begins.
    void Take(std::string_view bytes);

    /// Forgets everything: a new command waits for its reply.
    void Clear();

    /// True when the last line taken has ended a reply.
    [[nodiscard]] bool Complete() const { return number_ != 0; }

    /// The number of the complete reply, 100 to 999; else 0.
    [[nodiscard]] int Number() const { return number_; }

    /// True for a whole reply after which the server sends nothing more to the same command.
    [[nodiscard]] bool Final() const { return number_ >= 200; }

    /// The last line of the complete reply behind its number and the space; cut like Words.
    [[nodiscard]] std::string_view LastLine() const { return lastLine_; }

    /// All lines of the reply for people, with numbers, divided by line feeds: UTF-8, or
    /// Windows-1252 where it is not, without control characters, `secret` replaced by "***".
    [[nodiscard]] Text Words(std::string_view secret) const;

  private:
    void EndLine();

    std::string line_;  // the line that is still coming
    std::string kept_;
    std::string lastLine_;
    int number_ = 0;
};

}  // namespace orma
