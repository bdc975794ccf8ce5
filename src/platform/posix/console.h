#pragma once

namespace orma {

/// True when somebody reads the stream in a terminal, where a line may be drawn again.
[[nodiscard]] bool OutputIsTerminal();
[[nodiscard]] bool ErrorsAreTerminal();

/// True when somebody sits at a terminal who can be asked.
[[nodiscard]] bool InputIsTerminal();

/// From now on this process creates files that their owner alone can read.
void CreateFilesForOwnerOnly();

}  // namespace orma
