#pragma once

#include <cstdint>

#include "audio/files/level_sheet.h"
#include "base/text.h"
#include "project/undo_record.h"

namespace orma {

/// The recording that recorder, player and editor work on. Positions in buffer periods. Plain
/// state, UI thread.
struct CurrentRecording {
    Text folder;  // with its separator; of a clip opened by hand it need not be the project's
    Text name;    // without extension
    Text audioPath;
    Text levelPath;
    Text title;  // of the selected clip
    LevelSheet sheet;
    std::uint32_t length = 0;  // 0: nothing recorded
    std::uint32_t selectionStart = 0;
    std::uint32_t selectionEnd = 0;
    std::uint32_t cursor = 0;
    std::int32_t currentCut = -1;  // index into the cuts; -1: none
    UndoRecord undo;

    [[nodiscard]] const Text& ShownName() const { return title.empty() ? name : title; }

    [[nodiscard]] bool HasSelection() const { return selectionStart < selectionEnd; }

    /// The current cut; null without one. No list has an index like that of -1.
    [[nodiscard]] RemovedRange* CurrentCut() {
        const auto index = static_cast<std::size_t>(currentCut);
        return index < sheet.cuts.size() ? &sheet.cuts[index] : nullptr;
    }
    [[nodiscard]] const RemovedRange* CurrentCut() const {
        const auto index = static_cast<std::size_t>(currentCut);
        return index < sheet.cuts.size() ? &sheet.cuts[index] : nullptr;
    }
};

}  // namespace orma
