#pragma once

#include <string>
#include <string_view>

namespace orma {

// What stands in the replies of a mail server (RFC 5321, 4.2): lines of a code, a hyphen where more
// follow, and text. Any thread.

/// What a server sent, fit for a trace line.
[[nodiscard]] std::string Printable(std::string text);

/// The end of the first complete reply in `text`: behind the line whose code no hyphen follows;
/// npos while it is not there.
[[nodiscard]] std::size_t EndOfReply(std::string_view text);

/// The last line of the first complete reply, without its line end; empty while none is there. Its
/// code is the reply's.
[[nodiscard]] std::string_view LastLine(std::string_view text);

/// The challenge in a reply that was read whole: the word behind the code, however long.
[[nodiscard]] std::string ChallengeOf(std::string_view line);

/// True when the reply to EHLO lists an extension (RFC 5321, 4.1.1.1), with a certain value where
/// one is given. Case does not count.
[[nodiscard]] bool OffersExtension(std::string_view reply, std::string_view keyword,
                                   std::string_view value = {});

}  // namespace orma
