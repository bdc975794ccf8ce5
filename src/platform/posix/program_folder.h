#pragma once

#include "platform/storage.h"

namespace orma {

/// Where the running program lies, with its separator; empty where the system does not tell.
[[nodiscard]] Text ExecutableFolder();

/// Finds the program's folder (with its separator): `home` when given; the executable's folder when
/// it holds the program's own settings or a file "portable.txt"; otherwise "orma-edit" in the
/// user's data folder (XDG_DATA_HOME, else ~/.local/share). Creates it when it is missing. On
/// failure `folder` names what could not be created.
[[nodiscard]] SystemError FindProgramFolder(Storage& storage, const Text& home, Text& folder);

}  // namespace orma
