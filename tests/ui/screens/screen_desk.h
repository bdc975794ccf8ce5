#pragma once

#include <optional>
#include <set>

#include "transport/desktop.h"
#include "ui/screens/w_win.h"
#include "ui/support/screen_rig.h"

namespace orma::test {

/// The window around a screen: remembers what was asked of it.
class FakeHost : public ScreenHost {
  public:
    void TickScreen(ScreenIndex screen, bool on) override {
        told += (on ? "+" : "-") + std::to_string(static_cast<int>(screen)) + " ";
    }
    void Invalidate() override { told += "paint "; }
    void UpdateMenus() override { told += "menus "; }
    void Announce(const Text& text) override { announced.push_back(text); }

    std::string told;
    std::vector<Text> announced;
};

/// A screen on a whole application, as the shell puts it there: it hears everything.
template <typename Screen>
class ScreenDesk : public Desktop {
  public:
    explicit ScreenDesk(const RigOptions& options = {}) : rig(options) {}

    /// Makes the screen with what follows scene and host, and enters it.
    template <typename... Arguments>
    void Make(Arguments&&... arguments) {
        screen.emplace(rig.scene, host, std::forward<Arguments>(arguments)...);
        screen->Entered();
        screen->Paint();
    }

    /// The first control of that name, or of them the knob; null when it is switched off.
    [[nodiscard]] Win* Find(TextView name, bool isKnob = false) const {
        for (Win* const control : Singly(screen->Controls()))
            if (control->Label().name == name &&
                (!isKnob || control->Label().role == ControlRole::kKnob))
                return control;
        return nullptr;
    }
    [[nodiscard]] std::string ValueOf(TextView name) const {
        const Win* const control = Find(name);
        return control != nullptr ? ToUtf8(control->Value()) : "none";
    }
    [[nodiscard]] std::string Lit() const {
        std::string names;
        for (const Win* const control : Singly(screen->Controls()))
            if (control->IsOn()) names += ToUtf8(control->Label().name) + " ";
        return names;
    }

    /// Keys are listed once, and tooltips ("Left, Right") name no others.
    void ExpectKeysAndTooltipsAgree() const {
        std::set<Text> names;
        for (const KeyAction& action : screen->Keys())
            EXPECT_TRUE(names.insert(NameOf(action.key)).second) << ToUtf8(action.does);
        EXPECT_FALSE(names.contains({})) << "a key without a name";
        for (const Win* const control : Singly(screen->Controls())) {
            Text rest = control->Label().shortcut;
            while (!rest.empty()) {
                const Text name = rest.substr(0, rest.find(u", "));
                EXPECT_TRUE(names.contains(name)) << ToUtf8(name);
                rest.erase(0, name.size() + 2);
            }
        }
    }

    void OnTransportState(TransportState state, const LitButtons& buttons) override {
        Desktop::OnTransportState(state, buttons);
        screen->OnTransportState(state, buttons);
    }
    void OnMarkText(const Text& text, std::uint32_t n) override { screen->OnMarkText(text, n); }
    void OnEdgeMoved(const EdgeMove& move) override { screen->OnEdgeMoved(move); }
    void OnLevel(std::uint8_t level) override { screen->OnLevel(level); }
    void OnSavingStarted() override { screen->OnSavingStarted(); }
    void OnSavedPeriods(std::uint32_t count) override { screen->OnSavedPeriods(count); }
    void OnTimeLeftChanged() override { screen->OnTimeLeftChanged(); }
    void OnClosed() override { screen->OnClosed(); }
    void OnInputLost(WaveLoss reason) override { screen->OnInputLost(reason); }
    void OnPosition(std::uint32_t at, std::uint8_t level) override {
        screen->OnPosition(at, level);
    }
    void OnPlaceMoved(std::uint32_t position) override { screen->OnPlaceMoved(position); }
    void OnCutChosen(std::int32_t index) override { screen->OnCutChosen(index); }
    void OnOutputLost(WaveLoss reason) override { screen->OnOutputLost(reason); }
    std::optional<PeriodRange> NextRange() override { return screen->NextRange(); }

    ScreenRig rig;
    FakeHost host;
    std::optional<Screen> screen;
};

}  // namespace orma::test
