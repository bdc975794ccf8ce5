#pragma once

#include <functional>
#include <memory>
#include <utility>
#include <vector>

#include "transport/transport_listener.h"
#include "ui/controls/win.h"
#include "ui/screens/keys.h"
#include "ui/screens/screen_host.h"

namespace orma {

/// What a key does on a screen.
struct KeyAction {
    Key key = Key::kOther;
    Text does;  // for who looks for it; keys that do the same say the same
    std::function<void()> act;
};

/// A screen: one page of the window with its table of controls. All screens are made at start and
/// live as long as the window; one is entered at a time. What transport, recorder and player tell
/// reaches every screen; it draws only while it is entered. UI thread.
class WWin : public Win, public TransportListener {
  public:
    /// `host` outlives the screen. The scene is kept here, for the controls.
    WWin(ScreenIndex index, const Scene& scene, ScreenHost& host);

    [[nodiscard]] ScreenIndex Index() const { return index_; }
    [[nodiscard]] bool IsEntered() const { return ownScene_.shown; }

    virtual void RightDown(Point /*at*/) {}
    virtual void RightUp(Point /*at*/) {}

    /// Timer 1: every 20 ms unless the device asks for another period.
    virtual void Tick() {}

    /// Does what Keys tells of that key; other keys do nothing.
    virtual void OnKey(Key key);

    /// What keys do here, as the device is held and with the controls that are switched on.
    [[nodiscard]] const std::vector<KeyAction>& Keys() const { return keys_; }

    /// The list that the clip editor shows has news; the code tells which.
    virtual void OnListNotification(std::uint32_t /*code*/) {}

    /// The normal page and every control on it.
    void Paint() override;

    /// The first control in table order that takes the pointer.
    [[nodiscard]] Win* HitTest(Point at) override;

    /// Project, recording or its marks and cuts are not what they were when the screen was entered;
    /// Paint follows.
    virtual void Refresh() {}

    /// It is the current screen now: its menu entry is ticked and the window painted anew.
    virtual void Entered();
    virtual void Left();

    /// The table of controls; a null entry is a control that is switched off.
    [[nodiscard]] const std::vector<std::unique_ptr<Win>>& Controls() const { return controls_; }

  protected:
    /// Appends to the table; null for a control that is switched off.
    template <typename Control>
    Control* Add(std::unique_ptr<Control> control) {
        Control* borrowed = control.get();
        controls_.push_back(std::move(control));
        return borrowed;
    }

    /// While the screen is made: from now on the key does that.
    void Bind(Key key, const char16_t* does, std::function<void()> act) {
        keys_.push_back({key, does, std::move(act)});
    }

    [[nodiscard]] const Scene& OwnScene() const { return ownScene_; }
    [[nodiscard]] ScreenHost& Host() { return host_; }

  private:
    ScreenIndex index_;
    Scene ownScene_;
    ScreenHost& host_;
    std::vector<std::unique_ptr<Win>> controls_;
    std::vector<KeyAction> keys_;
};

}  // namespace orma
