#include "ui/controls/win.h"

namespace orma {

std::vector<Win*> Singly(std::span<const std::unique_ptr<Win>> table) {
    std::vector<Win*> controls;
    for (const auto& control : table) {
        if (!control) continue;
        const auto pieces = control->Pieces();
        if (pieces.empty()) controls.push_back(control.get());
        for (const auto& piece : pieces)
            controls.push_back(piece.get());
    }
    return controls;
}

}  // namespace orma
