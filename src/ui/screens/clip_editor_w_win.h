#pragma once

#include <cstdint>
#include <functional>
#include <optional>

#include "project/project.h"
#include "transport/play_list.h"
#include "transport/transport.h"
#include "ui/controls/toggle_button_win.h"
#include "ui/screens/clip_list_view.h"
#include "ui/screens/w_win.h"

namespace orma {

/// What the clip editor works and shows; all outlive it.
struct ClipEditorServices {
    Transport& transport;
    Project& project;
    ClipListView& list;
    std::function<std::optional<Text>()> askClip;  // the open-file dialog for a recording
};

/// The clip editor: the clip list in a list control, whose last row is the length of all clips and
/// never a clip. Clips are added, removed, moved, renamed, and played one after the other. While a
/// take is recorded the list can only be looked at: the current recording is the recorder's.
///
/// The list has keys of its own: the arrows mark, F2 renames, Ctrl or Alt with Up and Down moves,
/// Shift with Enter plays the marked clip alone. UI thread.
class ClipEditorWWin : public WWin {
  public:
    /// `detailed`: columns for length, time and location, under a header, in place of the
    /// description.
    ClipEditorWWin(const Scene& scene, ScreenHost& host, ClipEditorServices services,
                   bool detailed);

    /// The buttons.
    void Insert();
    void Remove();
    void MoveUp();
    void MoveDown();
    void Renew();  // reads length, time and texts of every clip anew

    /// Plays from the current clip's selection on, or the current clip `alone`. Nothing while
    /// something is recorded or played.
    void PlayFromCurrent(bool alone);

    void RightDown(Point at) override;
    void OnListNotification(std::uint32_t code) override;
    void Refresh() override;
    void Entered() override;
    void Left() override;

    // TransportListener
    void OnTransportState(TransportState state, const LitButtons& lit) override;
    std::optional<PeriodRange> NextRange() override;
    void OnClosed() override;

  private:
    // clip_editor_w_win_table.cpp
    void MakeListButtons();
    void BindKeys();
    [[nodiscard]] ClipListLook Look() const;

    // clip_editor_w_win.cpp
    [[nodiscard]] bool IsPlaying() const;  // until the last of it was heard
    [[nodiscard]] bool IsIdle() const;     // nothing is captured or played
    [[nodiscard]] bool IsTotalMarked() const;
    void Stop();
    void Select(std::int32_t index);
    void Rename(std::int32_t index, const Text& title);
    void MoveTo(std::int32_t index);
    void ListChanged();

    void MarkCurrent();
    void Fill();
    [[nodiscard]] ClipListContent Content() const;
    [[nodiscard]] std::vector<Text> RowOf(const ClipEntry& clip) const;
    void SetWidths(ClipListContent& content) const;
    [[nodiscard]] bool ShowsDates(const ClipListContent& content) const;
    void Light(const LitButtons& lit);

    ClipEditorServices s_;
    bool detailed_;
    ClipListLook look_;
    bool busy_ = false;                // the list is being filled: what it tells is no news
    std::optional<PlayList> playing_;  // what follows; none unless the list plays
    bool alone_ = false;               // nothing follows
    ToggleButtonWin* stop_ = nullptr;
    ToggleButtonWin* play_ = nullptr;
};

}  // namespace orma
