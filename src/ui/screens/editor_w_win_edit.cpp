// What the user does to the recording in the editor, and with which keys.

#include <algorithm>
#include <limits>

#include "project/cuts.h"
#include "project/marks.h"
#include "project/undo.h"
#include "ui/screens/editor_w_win.h"

namespace orma {

void EditorWWin::GoTo(std::int64_t position) {
    constexpr std::int64_t kMost = std::numeric_limits<std::int32_t>::max();
    s_.transport.MoveTo(static_cast<std::int32_t>(std::clamp<std::int64_t>(position, 0, kMost)));
}

bool EditorWWin::MayUndo() const {
    return MayEdit() && (CanUndo(s_.project) || CanRedo(s_.project));
}

void EditorWWin::Undo() {
    Edit([](Project& project) { return CanUndo(project) ? UndoEdit(project) : RedoEdit(project); });
}

void EditorWWin::Mark() {
    Edit([](Project& project) { return ToggleMark(project); });
}

void EditorWWin::RemoveCut() {
    if (s_.recording.currentCut < 0) return;
    Edit([cut = static_cast<std::size_t>(s_.recording.currentCut)](Project& project) {
        return DeleteCut(project, cut);
    });
}

// A failure was reported; what is shown is true in either case.
void EditorWWin::Edit(const EditOperation& operation) {
    if (!s_.transport.Edit(operation) || !IsEntered()) return;
    graph_->GraphRedraw();
    ShowCutButtons();
    ShowTimes();
    Host().UpdateMenus();
}

void EditorWWin::BindKeys() {
    BindTransportKeys();
    BindMarkKeys(Key::k1, Key::k3);
    Bind(Key::kLeft, u"Back by a column", [this] { graph_->StepBy(-1); });
    Bind(Key::kRight, u"Ahead by a column", [this] { graph_->StepBy(1); });
    Bind(Key::kPageUp, u"Back by a view", [this] { bar_->StepBy(-1); });
    Bind(Key::kPageDown, u"Ahead by a view", [this] { bar_->StepBy(1); });
    Bind(Key::kHome, u"Begin of the selection", [this] { GoTo(s_.recording.selectionStart); });
    Bind(Key::kEnd, u"End of the selection", [this] { GoTo(s_.recording.selectionEnd); });
    for (const Key key : {Key::kUp, Key::kPlus})
        Bind(key, u"Zoom in", [this] { ZoomIn(); });
    for (const Key key : {Key::kDown, Key::kMinus})
        Bind(key, u"Zoom out", [this] { ZoomOut(); });
    Bind(Key::kInsert, u"Set a mark, or delete the one at the cursor", [this] { Mark(); });
    Bind(Key::kDelete, u"Delete the current cut", [this] { RemoveCut(); });
    Bind(Key::kBackspace, u"Take the last edit back, or do it again", [this] { Undo(); });
}

}  // namespace orma
