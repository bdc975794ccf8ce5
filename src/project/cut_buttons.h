#pragma once

#include <cstdint>
#include <optional>

#include "audio/files/level_sheet.h"

namespace orma {

/// How a button of the editor looks.
enum class ButtonLook : std::uint8_t { kOff = 0, kOn = 1, kHalf = 2 };

/// The looks of "cut begin" and "cut end".
struct CutButtonLooks {
    ButtonLook begin = ButtonLook::kOff;
    ButtonLook end = ButtonLook::kOff;

    friend bool operator==(const CutButtonLooks&, const CutButtonLooks&) = default;
};

/// What the cut buttons depend on; positions in buffer periods.
struct CutButtonState {
    std::optional<RemovedRange> cut;  // the current one
    std::uint32_t cursor = 0;
    std::uint32_t selectionStart = 0;
    std::uint32_t selectionEnd = 0;
    std::uint32_t length = 0;          // of the recording
    std::uint32_t transportState = 0;  // 3: playing
};

/// The looks for a state. Without a current cut both are on while the cursor stands on an edge of
/// the selection and nothing plays. With one, a half look tells on which side of an edge the
/// cursor is.
[[nodiscard]] CutButtonLooks UpdateCutButtons(const CutButtonState& state);

}  // namespace orma
