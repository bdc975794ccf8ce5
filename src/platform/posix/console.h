#pragma once

#include <string>

namespace orma {

/// True when somebody reads the stream in a terminal, where a line may be drawn again.
[[nodiscard]] bool OutputIsTerminal();
[[nodiscard]] bool ErrorsAreTerminal();

/// True when somebody sits at a terminal who can be asked.
[[nodiscard]] bool InputIsTerminal();

/// Waits for a line of standard input, without its end; empty at the end of the input and as soon
/// as Ctrl-C was pressed, also where it is held back (HeldInterrupt).
[[nodiscard]] std::string ReadAnswer();

/// From now on this process creates files that their owner alone can read.
void CreateFilesForOwnerOnly();

}  // namespace orma
