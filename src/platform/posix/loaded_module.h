#pragma once

namespace orma {

/// Loads a shared library, which then stays until the program ends, and finds a name in it, to be
/// cast to what it is. `path` is relative to the folder of the program. Null where the library
/// cannot be loaded or has no such name. Any thread.
[[nodiscard]] void* FindInModule(const char* path, const char* name);

}  // namespace orma
