// What transport, recorder and player tell goes to every screen; the menus follow what changes the
// commands that make sense.

#include "shell/shell.h"

namespace orma {

void Shell::OnTransportState(TransportState state, const LitButtons& lit) {
    TellScreens(&TransportListener::OnTransportState, state, lit);
    UpdateMenus();
}

void Shell::OnMarkText(const Text& text, std::uint32_t periods) {
    TellScreens(&TransportListener::OnMarkText, text, periods);
}

void Shell::OnEdgeMoved(const EdgeMove& move) {
    TellScreens(&TransportListener::OnEdgeMoved, move);
}

void Shell::OnLevel(std::uint8_t level) {
    TellScreens(&TransportListener::OnLevel, level);
}

void Shell::OnSavedPeriods(std::uint32_t count) {
    TellScreens(&TransportListener::OnSavedPeriods, count);
}

void Shell::OnSavingStarted() {
    TellScreens(&TransportListener::OnSavingStarted);
}

void Shell::OnSavingStopped() {
    TellScreens(&TransportListener::OnSavingStopped);
}

void Shell::OnTimeLeftChanged() {
    TellScreens(&TransportListener::OnTimeLeftChanged);
}

void Shell::OnIndicator(bool lit) {
    TellScreens(&TransportListener::OnIndicator, lit);
}

void Shell::OnMark(std::uint32_t number) {
    TellScreens(&TransportListener::OnMark, number);
}

void Shell::OnStopped() {
    TellScreens(&TransportListener::OnStopped);
    UpdateMenus();
}

void Shell::OnClosed() {
    TellScreens(&TransportListener::OnClosed);
    NoteProject();  // the first take made its file
    UpdateMenus();
    if (closePatience_ != nullptr) Quit();
}

void Shell::OnInputLost(WaveLoss reason) {
    TellScreens(&TransportListener::OnInputLost, reason);
}

void Shell::OnPosition(std::uint32_t heard, std::uint8_t level) {
    TellScreens(&TransportListener::OnPosition, heard, level);
}

void Shell::OnPlaceMoved(std::uint32_t position) {
    TellScreens(&TransportListener::OnPlaceMoved, position);
}

void Shell::OnCutChosen(std::int32_t index) {
    TellScreens(&TransportListener::OnCutChosen, index);
}

void Shell::OnPlaying(bool playing) {
    TellScreens(&TransportListener::OnPlaying, playing);
    UpdateMenus();
}

std::optional<PeriodRange> Shell::NextRange() {
    for (const auto& screen : screens_) {
        if (screen == nullptr) continue;
        if (const auto range = screen->NextRange()) return range;
    }
    return std::nullopt;
}

void Shell::OnPlayedOut() {
    TellScreens(&TransportListener::OnPlayedOut);
    UpdateMenus();
}

void Shell::OnOutputLost(WaveLoss reason) {
    TellScreens(&TransportListener::OnOutputLost, reason);
    UpdateMenus();
}

}  // namespace orma
