#pragma once

#include <cstdint>
#include <optional>

#include "project/current_recording.h"
#include "stream/jstream_file.h"

namespace orma {

class Project;

// Cuts of the current recording, positions in buffer periods. Every change is in the level file
// when the operation succeeds; a failure is reported and changes nothing. UI thread.

/// Inserts a cut before the first one whose begin is greater than the new cut's end, and returns
/// its index; nothing when there is no room for more cuts. The current clip's length follows.
[[nodiscard]] std::optional<std::size_t> AddCut(Project& project, std::uint32_t begin,
                                                std::uint32_t end);

/// Deletes a cut, which can be undone; none is current then. The current clip's length follows.
/// False outside the list.
[[nodiscard]] bool DeleteCut(Project& project, std::size_t index);

/// Moves an edge of the current cut, which can be undone unless the cut was empty. The current
/// clip's length follows. False without a current cut.
[[nodiscard]] bool MoveCutEdge(Project& project, std::uint32_t RemovedRange::*edge,
                               std::uint32_t position);

/// Without a current cut: adds one that begins at the cursor, a second long when `oneSecond` is
/// set, else empty, and moves the cursor to its end. With one whose end lies behind the cursor: its
/// begin moves there, which can be undone unless the cut was empty. The current clip's length
/// follows.
[[nodiscard]] bool CutBegin(Project& project, bool oneSecond);

/// The mirror image: a cut that ends at the cursor, which moves to its begin; or the end of the
/// current cut, when the cursor lies behind its begin.
[[nodiscard]] bool CutEnd(Project& project, bool oneSecond);

}  // namespace orma
