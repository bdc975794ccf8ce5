#pragma once

namespace orma {

/// 'a' for 'A' and so on; all but the 26 letters of ASCII stay. For names that know no case: of
/// hosts, extensions, files on servers.
[[nodiscard]] constexpr char16_t SmallLetter(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + (u'a' - u'A')) : unit;
}

}  // namespace orma
