#pragma once

#include <cstdint>
#include <optional>

#include "project/project.h"

namespace orma {

enum class Edge : std::uint8_t { kCutBegin, kCutEnd, kSelectionStart, kSelectionEnd };

/// An edge that moves; positions in buffer periods.
struct EdgeMove {
    Edge edge = Edge::kCutBegin;
    std::uint32_t from = 0;
    std::uint32_t to = 0;

    friend bool operator==(const EdgeMove&, const EdgeMove&) = default;
};

/// The move of the edge that the cursor stands on by one period; nothing when it stands on none.
/// An edge of the current cut goes before one of the selection; an empty cut opens to the side
/// that is asked. Where an edge may not go (outside the recording, over its other edge; a selection
/// keeps a period), `to` is `from`.
[[nodiscard]] std::optional<EdgeMove> NudgeAtCursor(const CurrentRecording& recording,
                                                    bool forward);

/// Moves an edge, and the cursor with it. A cut is stored in the level file, and its move can be
/// undone unless it was empty; a selection in the clip that is edited and the project file; the
/// clip's length follows. False (reported) when it cannot be stored; then nothing has moved. UI
/// thread.
[[nodiscard]] bool MoveEdge(Project& project, const EdgeMove& move);

}  // namespace orma
