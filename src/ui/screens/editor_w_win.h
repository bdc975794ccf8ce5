#pragma once

#include <cstdint>

#include "audio/engine/external_recorder_control.h"
#include "audio/engine/recorder.h"
#include "project/cut_buttons.h"
#include "project/project.h"
#include "transport/transport.h"
#include "ui/controls/button_bar_win.h"
#include "ui/controls/button_win.h"
#include "ui/controls/name_win.h"
#include "ui/controls/rec_graph_win.h"
#include "ui/controls/rec_time_win.h"
#include "ui/controls/scrollbar_win.h"
#include "ui/controls/total_nr_secs_win.h"
#include "ui/controls/vu_win.h"
#include "ui/screens/external_level.h"
#include "ui/screens/transport_w_win.h"

namespace orma {

/// What the editor works and shows; all outlive it.
struct EditorScreenServices {
    Transport& transport;
    Recorder& recorder;
    Project& project;
    CurrentRecording& recording;
    const AudioState& audio;
    ExternalRecorderControl& externalRecorder;
};

/// The editor: the level graph of the current recording with its scroll bar, zoom, marks and cuts,
/// and the buttons of the recorder. Never upside down. UI thread.
class EditorWWin : public TransportWWin {
  public:
    /// `redrawWholeBar`: the scroll bar is repainted over its whole length.
    EditorWWin(const Scene& scene, ScreenHost& host, const EditorScreenServices& services,
               bool redrawWholeBar);

    /// Edits as the buttons beside the graph do; nothing during a take.
    void Undo();  // or does again what was taken back last
    void Mark();
    void RemoveCut();

    void Refresh() override;
    void Tick() override;
    void Entered() override;
    void Left() override;

    // TransportListener
    void OnTransportState(TransportState state, const LitButtons& lit) override;
    void OnMarkText(const Text& text, std::uint32_t periods) override;
    void OnEdgeMoved(const EdgeMove& move) override;
    void OnLevel(std::uint8_t level) override { meter_->VuUpdate(level); }
    void OnSavingStarted() override;
    void OnSavedPeriods(std::uint32_t count) override;
    void OnClosed() override;
    void OnPosition(std::uint32_t heard, std::uint8_t level) override;
    void OnPlaceMoved(std::uint32_t position) override;
    void OnCutChosen(std::int32_t index) override;

  private:
    // editor_w_win.cpp
    [[nodiscard]] bool IsSelectionEdited() const;
    [[nodiscard]] bool MayEdit() const {
        return !s_.transport.IsCapturing() && s_.recording.length > 0;
    }
    [[nodiscard]] bool MayUndo() const;
    [[nodiscard]] GraphSource Source() const;
    void GoTo(std::int64_t position);
    void ZoomIn() { graph_->ZoomIn(); }
    void ZoomOut() { graph_->ZoomOut(); }
    void Edit(const EditOperation& operation);
    void ShowButtons();
    void ShowCutButtons();
    void ShowName();
    void ShowTimes();

    // editor_w_win_table.cpp
    void MakeDisplay();
    void MakeGraph(bool redrawWholeBar);
    void MakeSideButtons();
    void BindKeys();

    EditorScreenServices s_;
    bool external_;  // an external recorder is attached
    ExternalLevel externalLevel_;
    Text shownPath_;  // of the recording that the graph's view belongs to
    CutButtonLooks looks_;
    bool selectionShown_ = false;
    std::uint32_t markPeriods_ = 0;  // for which the mark's text still stands

    NameWin* name_ = nullptr;
    VuWin* meter_ = nullptr;
    RecTimeWin* time_ = nullptr;
    ScrollbarWin* bar_ = nullptr;
    RecGraphWin* graph_ = nullptr;
    ButtonBarWin* sideButtons_ = nullptr;
    ButtonWin* cutBegin_ = nullptr;  // over Rewind: it moves the edge under the cursor
    ButtonWin* cutEnd_ = nullptr;    // over FastForward
    TotalNrSecsWin* total_ = nullptr;
};

}  // namespace orma
