#include "project/cut_buttons.h"

namespace orma {
namespace {

constexpr std::uint32_t kPlaying = 3;

constexpr CutButtonLooks Both(bool on) {
    const ButtonLook look = on ? ButtonLook::kOn : ButtonLook::kOff;
    return {look, look};
}

}  // namespace

CutButtonLooks UpdateCutButtons(const CutButtonState& state) {
    const std::uint32_t cursor = state.cursor;
    if (!state.cut) {
        const bool onEdge = cursor == state.selectionStart || cursor == state.selectionEnd;
        return Both(onEdge && state.transportState != kPlaying && state.length > 0);
    }
    const RemovedRange& cut = *state.cut;
    if (cursor == cut.begin || cursor == cut.end) return Both(cut.begin != cut.end);
    return {cursor > cut.begin ? ButtonLook::kHalf : ButtonLook::kOff,
            cursor < cut.end ? ButtonLook::kHalf : ButtonLook::kOff};
}

}  // namespace orma
