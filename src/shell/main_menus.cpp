#include "shell/main_menus.h"

#include <algorithm>

#include "app/recent_projects.h"
#include "base/path.h"

namespace orma {
namespace {

using Items = std::vector<MenuItem>;

MenuItem Line(Command command, Text text) {
    return {.command = command, .text = std::move(text)};
}

MenuItem GreyLine(Command command, Text text) {
    return {.command = command, .text = std::move(text), .enabled = false};
}

MenuItem Separator() {
    return {.kind = MenuItem::Kind::kSeparator};
}

MenuItem ClipButton() {
    return {.kind = MenuItem::Kind::kBitmap, .command = Command::kPublishClip};
}

Items FileItems() {
    return {Line(Command::kPublishClip, u"Publish Clip..."),
            Separator(),
            Line(Command::kOpenProject, u"Open project"),
            Line(Command::kNewProject, u"New project"),
            Line(Command::kOpenClip, u"Open clip"),
            Separator(),
            Line(Command::kSaveSelection, u"Save selection"),
            Line(Command::kCopyToClipEditor, u"Copy to clip-editor..."),
            Separator(),
            Line(Command::kDelete, u"Delete"),
            Separator(),
            Line(Command::kExit, u"Exit")};
}

Items PublishItems() {
    return {Line(Command::kPublishClip, u"Clip"), Line(Command::kPublishClipList, u"Cliplist")};
}

Items EditItems(MainMenu menu) {
    if (menu == MainMenu::kRecorder) return {Line(Command::kMark, u"Mark")};
    return {Line(Command::kCropBegin, u"Crop begin"),
            Line(Command::kCropEnd, u"Crop end"),
            Separator(),
            Line(Command::kCutBegin, u"Cut begin"),
            Line(Command::kCutEnd, u"Cut end"),
            Separator(),
            Line(Command::kMark, u"Mark")};
}

Items ViewItems() {
    return {Line(Command::kRecorder, u"Record"),
            Line(Command::kEditor, u"Editor"),
            Line(Command::kClipEditor, u"Clip editor"),
            Separator(),
            Line(Command::kEditText, u"Edit Text"),
            Separator(),
            Line(Command::kAbout, u"About"),
            Line(Command::kShortcuts, u"Keyboard shortcuts\tF1")};
}

void EnableItems(Items& items, const MenuState& state) {
    for (MenuItem& item : items) {
        if (item.kind == MenuItem::Kind::kSubmenu)
            EnableItems(item.items, state);
        else if (item.kind != MenuItem::Kind::kSeparator)
            item.enabled = IsEnabled(item.command, state);
    }
}

void Append(Items& items, std::initializer_list<MenuItem> more) {
    items.push_back(Separator());
    items.insert(items.end(), more);
}

Command RecentProject(std::size_t place) {
    return static_cast<Command>(static_cast<std::size_t>(Command::kRecentProject) + place);
}

/// The name, and as much of the folder's end as a menu can show.
Text RecentText(const Text& path) {
    constexpr std::size_t kMostOfFolder = 40;
    const PathParts parts = SplitPath(path);
    const Text& folder = parts.folder;
    const Text shown = folder.size() <= kMostOfFolder
                           ? folder
                           : u"..." + folder.substr(folder.size() - kMostOfFolder);
    return parts.name + u"   " + shown;
}

}  // namespace

std::optional<std::size_t> RecentPlace(Command command) {
    const auto place =
        static_cast<std::size_t>(command) - static_cast<std::size_t>(Command::kRecentProject);
    return place < RecentProjects::kMost ? std::optional(place) : std::nullopt;
}

MenuBar BuildMenuBar(MainMenu menu, const MenuOptions& options) {
    Items file = FileItems();
    Items publish = PublishItems();
    Items view = ViewItems();
    if (options.inputOptions)
        view.insert(view.begin(), {Line(Command::kInputOptions, u"Input options..."), Separator()});
    if (options.publishClipButton) file.front() = ClipButton();
    if (options.imagePublishing) Append(publish, {Line(Command::kImage, u"Image")});
    if (options.publishToFile)
        Append(publish, {GreyLine(Command::kClipToFile, u"Clip to File"),
                         GreyLine(Command::kClipListToFile, u"Cliplist to File")});
    if (options.fastPublishing)
        Append(publish, {GreyLine(Command::kFastClip, u"Fast Clip"),
                         GreyLine(Command::kFastClipList, u"Fast Cliplist")});
    return {{{u"  File  ", std::move(file)},
             {u"  Publish  ", std::move(publish)},
             {u"  Edit  ", EditItems(menu)},
             {u"  View  ", std::move(view)}}};
}

void AddRecentProjects(Menu& file, const std::vector<Text>& paths) {
    if (paths.empty()) return;
    MenuItem recent{.kind = MenuItem::Kind::kSubmenu, .text = u"Recent projects"};
    for (std::size_t i = 0; i < paths.size(); ++i)
        recent.items.push_back(Line(RecentProject(i), RecentText(paths[i])));
    file.items.insert(file.items.end() - 1, {std::move(recent), Separator()});
}

void RenewMarkItem(Menu& edit, bool onMark) {
    const auto isMark = [](const MenuItem& item) {
        return item.kind == MenuItem::Kind::kCommand && item.command == Command::kMark;
    };
    const auto found = std::ranges::find_if(edit.items, isMark);
    if (found == edit.items.end()) return;
    MenuItem item = *found;
    edit.items.erase(found);
    item.text = onMark ? u"Delete marker" : u"Mark";
    edit.items.push_back(std::move(item));
}

bool IsEnabled(Command command, const MenuState& state) {
    if (state.screen == ScreenIndex::kProgress) return false;
    if (RecentPlace(command)) command = Command::kOpenProject;
    const bool idle = !state.capturing && !state.playing;
    const bool editable = !state.capturing && state.recorded;
    // There one sees what is published, and a box says what is missing.
    const bool clipEditor = state.screen == ScreenIndex::kClipEditor;
    switch (command) {
        case Command::kRecorder:
        case Command::kEditor:
        case Command::kClipEditor:
        case Command::kAbout:
        case Command::kShortcuts:
        case Command::kExit:
            return true;
        case Command::kEditText:
            return !state.textEditor;
        case Command::kOpenProject:
        case Command::kNewProject:
        case Command::kOpenClip:
        case Command::kDelete:
        case Command::kInputOptions:
        case Command::kRecord:
            return idle;
        case Command::kSaveSelection:
            return idle && state.selection;
        case Command::kClipToFile:
        case Command::kFastClip:
            return idle && (state.recorded || clipEditor);
        case Command::kCopyToClipEditor:
            return idle && state.recorded;
        case Command::kPublishClip:
            return idle && (state.recorded || state.imagePublishing || clipEditor);
        case Command::kPublishClipList:
            return idle && (state.clips || state.imagePublishing || clipEditor);
        case Command::kClipListToFile:
        case Command::kFastClipList:
            return idle && (state.clips || clipEditor);
        case Command::kImage:
            return idle && state.imagePublishing;
        case Command::kCropBegin:
        case Command::kCropEnd:
            return editable && state.screen == ScreenIndex::kEditor;
        case Command::kCutBegin:
            return editable && state.screen == ScreenIndex::kEditor && state.cutBegin;
        case Command::kCutEnd:
            return editable && state.screen == ScreenIndex::kEditor && state.cutEnd;
        case Command::kMark:
            return editable;
        case Command::kListView:
        case Command::kNone:
        case Command::kRecentProject:
            break;
    }
    return false;
}

void EnableItems(MenuBar& bar, const MenuState& state) {
    for (Menu& menu : bar.menus)
        EnableItems(menu.items, state);
}

}  // namespace orma
