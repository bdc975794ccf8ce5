// What the user does to the recording in the editor, and with which keys.

#include <algorithm>
#include <limits>

#include "project/cuts.h"
#include "project/marks.h"
#include "project/selection.h"
#include "project/undo.h"
#include "ui/screens/editor_w_win.h"

namespace orma {

void EditorWWin::GoTo(std::int64_t position) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    s_.transport.MoveTo(static_cast<std::int32_t>(std::clamp<std::int64_t>(position, 0, kMost)));
}

void EditorWWin::Undo() {
    if (IsCapturing()) return;
    const std::uint32_t cursor = s_.recording.cursor;
    static_cast<void>(CanUndo(s_.project) ? UndoEdit(s_.project) : RedoEdit(s_.project));
    Edited(cursor);
}

void EditorWWin::Mark() {
    if (IsCapturing() || s_.recording.length == 0) return;
    const std::uint32_t cursor = s_.recording.cursor;
    if (EnsureLevels(s_.project)) static_cast<void>(ToggleMark(s_.files, s_.recording));
    Edited(cursor);
}

void EditorWWin::RemoveCut() {
    if (IsCapturing() || s_.recording.currentCut < 0) return;
    const std::uint32_t cursor = s_.recording.cursor;
    static_cast<void>(DeleteCut(s_.project, static_cast<std::size_t>(s_.recording.currentCut)));
    Edited(cursor);
}

// A failure was reported; what is shown is true in either case.
void EditorWWin::Edited(std::uint32_t cursorBefore) {
    if (s_.recording.cursor != cursorBefore) GoTo(s_.recording.cursor);
    if (!IsEntered()) return;
    graph_->GraphRedraw();
    ShowCutButtons();
    ShowTimes();
    Host().UpdateMenus();
}

void EditorWWin::OnKey(Key key) {
    switch (key) {
        case Key::kEnter:
            return static_cast<int>(s_.transport.State()) >= 2 ? stop_->Press() : play_->Press();
        case Key::k1:
            return s_.transport.BackMark();
        case Key::k3:
            return s_.transport.ForwardMark();
        case Key::k2:
            return rewind_->Press();
        case Key::k5:
            return fastForward_->Press();
        case Key::k7:
            return stop_->Press();
        case Key::k8:
            return play_->Press();
        case Key::k9:
            return record_->Press();
        case Key::kLeft:
            return graph_->StepBy(-1);
        case Key::kRight:
            return graph_->StepBy(1);
        case Key::kPageUp:
            return bar_->StepBy(-1);
        case Key::kPageDown:
            return bar_->StepBy(1);
        case Key::kHome:
            return GoTo(s_.recording.selectionStart);
        case Key::kEnd:
            return GoTo(s_.recording.selectionEnd);
        case Key::kUp:
        case Key::kPlus:
            return graph_->ZoomIn();
        case Key::kDown:
        case Key::kMinus:
            return graph_->ZoomOut();
        case Key::kInsert:
            return Mark();
        case Key::kDelete:
            return RemoveCut();
        case Key::kBackspace:
            return Undo();
        default:
            return;
    }
}

}  // namespace orma
