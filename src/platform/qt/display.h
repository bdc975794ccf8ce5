#pragma once

namespace orma {

/// Whether the toolkit will find a display, or was told to do without. It ends the process where it
/// finds none, so this is asked before its application object is made.
[[nodiscard]] bool HasDisplay(int count, const char* const* arguments);

}  // namespace orma
