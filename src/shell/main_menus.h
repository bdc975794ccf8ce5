#pragma once

#include <cstddef>
#include <optional>

#include "shell/menu_bar.h"
#include "ui/screens/screen_host.h"

namespace orma {

/// The menu bars by their numbers. The editor's also crops and cuts, which needs the graph.
enum class MainMenu : std::uint16_t { kRecorder = 102, kEditor = 103 };

/// The top-level menus by their places.
enum class TopMenu : std::uint8_t { kFile = 0, kPublish = 1, kEdit = 2, kView = 3 };

/// The settings that add entries.
struct MenuOptions {
    bool inputOptions = false;
    bool publishClipButton = false;
    bool imagePublishing = true;
    bool publishToFile = false;
    bool fastPublishing = false;
};

/// A menu bar with the entries of the options. What publishes to a file or fast is grey at first.
[[nodiscard]] MenuBar BuildMenuBar(MainMenu menu, const MenuOptions& options);

/// Makes the entry of the mark command anew, at the end of the menu: "Delete marker" where the
/// cursor stands on a mark, else "Mark".
void RenewMarkItem(Menu& edit, bool onMark);

/// Appends the recent projects, the latest first, as a submenu before "Exit"; nothing without any.
void AddRecentProjects(Menu& file, const std::vector<Text>& paths);

/// The place of a recent project in their list, for the commands that open one.
[[nodiscard]] std::optional<std::size_t> RecentPlace(Command command);

/// What decides which commands make sense.
struct MenuState {
    ScreenIndex screen = ScreenIndex::kRecorder;
    bool capturing = false;  // monitored, recorded, or a take drains
    bool playing = false;    // or winding
    bool recorded = false;   // there is a current recording
    bool selection = false;  // it has one
    bool cutBegin = false;   // the cursor is where the begin of a cut may be
    bool cutEnd = false;
    bool clips = false;  // the list has some
    bool imagePublishing = true;
    bool textEditor = false;  // it is open
};

/// Whether a command makes sense now: nothing but the progress screen's own Cancel while a job
/// runs, no files while something is recorded or played, no editing during a take.
[[nodiscard]] bool IsEnabled(Command command, const MenuState& state);

/// Enables what makes sense, greys the rest.
void EnableItems(MenuBar& bar, const MenuState& state);

}  // namespace orma
