#pragma once

#include "transport/transport.h"
#include "ui/controls/toggle_button_win.h"
#include "ui/screens/w_win.h"

namespace orma {

/// A screen with the five buttons of the tape recorder, which show the transport's state, and with
/// the keys that press them. UI thread.
class TransportWWin : public WWin {
  public:
    // A press of a button, from wherever it comes: the pointer, a key, a menu.
    void PressStop() { stop_->Press(); }
    void PressPlay() { play_->Press(); }
    void PressRecord() { record_->Press(); }
    void PressRewind() { rewind_->Press(); }
    void PressFastForward() { fastForward_->Press(); }

  protected:
    /// Where the buttons stand.
    struct ButtonElements {
        Element stop;
        Element play;
        Element record;
        Element rewind;
        Element fastForward;
    };

    /// `transport` outlives the screen.
    TransportWWin(ScreenIndex index, const Scene& scene, ScreenHost& host, Transport& transport)
        : WWin(index, scene, host), transport_(transport) {}

    /// Appends the buttons to the table, in the order of `ButtonElements`. `byDigits`: their digits
    /// press them.
    void MakeTransportButtons(const ButtonElements& elements, bool byDigits);

    /// Appends the buttons that go to the mark before the cursor and to the one behind it.
    void MakeMarkButtons(Element back, Element forward, bool byDigits);

    /// Binds Enter, which plays or stops what runs, and the buttons' digits.
    void BindTransportKeys();

    /// Binds keys to the mark before the cursor and the one behind it.
    void BindMarkKeys(Key back, Key forward);

    void Light(const LitButtons& lit);

    [[nodiscard]] ToggleButtonWin& RewindButton() { return *rewind_; }
    [[nodiscard]] ToggleButtonWin& FastForwardButton() { return *fastForward_; }

  private:
    Transport& transport_;
    ToggleButtonWin* stop_ = nullptr;
    ToggleButtonWin* play_ = nullptr;
    ToggleButtonWin* record_ = nullptr;
    ToggleButtonWin* rewind_ = nullptr;
    ToggleButtonWin* fastForward_ = nullptr;
};

}  // namespace orma
