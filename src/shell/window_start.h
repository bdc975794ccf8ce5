#pragma once

#include <functional>

#include "platform/patience.h"
#include "platform/running_instance.h"
#include "shell/held_boxes.h"
#include "shell/shell.h"

namespace orma {

/// What the window turned out to be, for its skin.
struct WindowLook {
    Size client;       // without the menu bar, pixels
    Pages background;  // of recorder and editor
};

/// What starting and ending the window works on; all outlive it.
struct WindowParts {
    Application& app;
    Shell& shell;
    MainWindow& window;
    RunningInstance& running;
    HeldBoxes& boxes;  // the application's

    /// Loads the skin; called when the window is there and before a screen is made.
    std::function<void(const WindowLook&)> loadSkin;
};

/// How long another instance may take to end when this one takes over; it may be finishing a take.
inline constexpr int kTakeOverPatienceMs = 10000;

/// From the arguments to the shown window. `commandLine` is the path of a project or recording;
/// empty, or with a blank at its start, it names none. With none, an instance that runs already
/// comes to the front and this one is done; with one, it takes the other one's place, unless that
/// does not end. What there is to tell of the start comes in boxes over the window, once the event
/// loop runs. False when the program ends at once, with code 0 and without a box.
[[nodiscard]] bool StartWindow(const WindowParts& parts, const Text& commandLine);

/// After the event loop: saves the project, ends what lives in the window and closes it, saves the
/// user state. Another instance may start then, while this one waits as long as `patience` lasts
/// for uploads that accompanied recordings, and gives up the others (told). False when something
/// could not be saved (reported).
bool EndWindow(const WindowParts& parts, Patience& patience);

}  // namespace orma
