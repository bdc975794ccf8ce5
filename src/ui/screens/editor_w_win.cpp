#include "ui/screens/editor_w_win.h"

#include <utility>
#include <vector>

namespace orma {

// The selection's edges are lines. It has a colour only while its edge is to be moved: it would
// hide the cuts within it.
bool EditorWWin::IsSelectionEdited() const {
    const CurrentRecording& recording = s_.recording;
    const std::uint32_t start = recording.selectionStart;
    const std::uint32_t end = recording.selectionEnd;
    const bool isPart = start < end && (start > 0 || end < recording.length);
    const bool onEdge = recording.cursor == start || recording.cursor == end;
    return isPart && onEdge && recording.currentCut < 0 &&
           s_.transport.State() == TransportState::kStopped && !s_.transport.IsCapturing();
}

GraphSource EditorWWin::Source() const {
    const CurrentRecording& recording = s_.recording;
    const bool recorded = s_.transport.State() == TransportState::kRecording;
    GraphSource source;
    source.levels = recording.sheet.levels;
    source.marks = recording.sheet.marks;
    source.cuts = recording.sheet.cuts;
    source.currentCut = recording.currentCut;
    source.selectionFlag = IsSelectionEdited();
    if (source.selectionFlag) source.selection = {recording.selectionStart, recording.selectionEnd};
    source.rangeStart = recording.selectionStart;
    source.rangeEnd = recording.selectionEnd;
    source.position =
        recorded ? static_cast<std::uint32_t>(recording.sheet.levels.size()) : recording.cursor;
    return source;
}

void EditorWWin::Refresh() {
    if (shownPath_ != s_.recording.audioPath) {
        shownPath_ = s_.recording.audioPath;
        graph_->GraphReset();
    }
    meter_->SetResolutionShift(s_.audio.resolutionShift);
    ShowName();
    ShowButtons();
    if (!IsEntered()) return;
    graph_->GraphRedraw();
    ShowTimes();
}

void EditorWWin::Entered() {
    WWin::Entered();
    Refresh();
    Host().UpdateMenus();
}

void EditorWWin::Left() {
    bar_->Release();
    WWin::Left();
    Host().UpdateMenus();
}

void EditorWWin::Tick() {
    if (external_ && !s_.recorder.IsClosed()) {
        if (const auto level = externalLevel_.Read(s_.externalRecorder, s_.audio.stereo))
            meter_->VuUpdate(*level);
    }
    ShowName();
    ShowTimes();
}

void EditorWWin::OnTransportState(TransportState state, const LitButtons& /*lit*/) {
    markPeriods_ = 0;
    externalLevel_.Rest();
    meter_->SetResolutionShift(s_.audio.resolutionShift);
    ShowButtons();
    if (state == TransportState::kStopped) {
        meter_->VuInit();
        if (IsEntered()) graph_->GraphSetPosition(Source().position);
    }
    ShowTimes();
    if (IsEntered()) Host().UpdateMenus();
}

void EditorWWin::ShowButtons() {
    Light(ButtonsOf(s_.transport.State()));
    if (IsEntered()) {
        // They lie over two of the buttons, which have just been drawn.
        cutBegin_->Paint();
        cutEnd_->Paint();
    }
    ShowCutButtons();
}

void EditorWWin::ShowCutButtons() {
    if (!IsEntered()) return;
    const bool edited = IsSelectionEdited();
    if (std::exchange(selectionShown_, edited) != edited) graph_->GraphRedraw();
    const CurrentRecording& recording = s_.recording;
    CutButtonState state;
    if (const RemovedRange* const cut = recording.CurrentCut()) state.cut = *cut;
    state.cursor = recording.cursor;
    state.selectionStart = recording.selectionStart;
    state.selectionEnd = recording.selectionEnd;
    state.length = recording.length;
    state.transportState = static_cast<std::uint32_t>(s_.transport.State());
    if (s_.transport.State() == TransportState::kDragging)
        state.transportState = static_cast<std::uint32_t>(TransportState::kPlaying);
    const CutButtonLooks looks =
        s_.transport.IsCapturing() ? CutButtonLooks{} : UpdateCutButtons(state);
    const auto put = [](ButtonWin* button, ToggleButtonWin& beneath, ButtonLook look) {
        button->SetState(static_cast<int>(look));
        if (look == ButtonLook::kOff) beneath.Paint();
    };
    sideButtons_->Update();
    if (looks == looks_) return;
    looks_ = looks;
    put(cutBegin_, RewindButton(), looks.begin);
    put(cutEnd_, FastForwardButton(), looks.end);
}

void EditorWWin::OnMarkText(const Text& text, std::uint32_t periods) {
    markPeriods_ = periods;
    if (!IsEntered()) return;
    time_->ShowText(text);
    graph_->GraphRedraw();
}

void EditorWWin::OnEdgeMoved(const EdgeMove& move) {
    if (!IsEntered()) return;
    if (IsSelectionEdited()) {
        graph_->GraphRedraw();
    } else if (move.edge == Edge::kSelectionStart) {
        graph_->GraphMoveLine(RecGraphWin::Line::kRangeStart, move.to);
        graph_->GraphSetPosition(s_.recording.cursor);
    } else if (move.edge == Edge::kSelectionEnd) {
        graph_->GraphMoveLine(RecGraphWin::Line::kRangeEnd, move.to);
        graph_->GraphSetPosition(s_.recording.cursor);
    } else {
        graph_->GraphRedraw();
    }
    ShowCutButtons();
    ShowTimes();
}

void EditorWWin::OnSavingStarted() {
    shownPath_ = s_.recording.audioPath;
    graph_->GraphReset();
    ShowName();
    if (IsEntered()) graph_->GraphRedraw();
}

void EditorWWin::OnSavedPeriods(std::uint32_t /*count*/) {
    if (markPeriods_ > 0) --markPeriods_;
    if (!IsEntered()) return;
    graph_->GraphFollow();
    ShowTimes();
}

void EditorWWin::OnClosed() {
    Refresh();
}

void EditorWWin::OnPosition(std::uint32_t /*heard*/, std::uint8_t level) {
    if (s_.transport.IsCapturing()) return;
    const bool stopped = s_.transport.State() == TransportState::kStopped;
    if (!stopped) meter_->VuUpdate(level);
    if (!IsEntered()) return;
    if (stopped)
        graph_->GraphSetPosition(s_.recording.cursor);
    else
        graph_->GraphFollow();
    ShowTimes();
    ShowCutButtons();
}

void EditorWWin::OnPlaceMoved(std::uint32_t position) {
    if (!IsEntered()) return;
    graph_->GraphSetPosition(position);
    ShowTimes();
    ShowCutButtons();
}

void EditorWWin::OnCutChosen(std::int32_t /*index*/) {
    if (!IsEntered()) return;
    graph_->GraphRedraw();
    ShowCutButtons();
}

void EditorWWin::ShowName() {
    const Text& name = s_.recording.ShownName();
    if (name == name_->Value()) return;
    name_->SetName(name);
    if (IsEntered()) Host().Invalidate();  // meter and graph lie over its box
}

void EditorWWin::ShowTimes() {
    if (!IsEntered()) return;
    const std::uint32_t perSecond = s_.audio.PeriodsPerSecond();
    const bool recorded = s_.transport.State() == TransportState::kRecording;
    const auto saved = static_cast<std::uint32_t>(s_.recording.sheet.levels.size());
    if (markPeriods_ == 0) time_->ShowPeriods(recorded ? saved : s_.recording.cursor, perSecond);
    total_->ShowTotal(recorded ? saved : s_.recording.length, perSecond);
}

}  // namespace orma
