#include <gtest/gtest.h>

#include "shell/shell_desk.h"

namespace orma::test {
namespace {

using enum ScreenIndex;

TEST(Shell, OpensOnTheRecorderAndTicksEvery20MsTheScreenThatIsCurrent) {
    ShellDesk desk;
    desk.missing = {kClipEditor};
    desk.shell.Open({240, 270});
    EXPECT_EQ(desk.log, Log{"entered 0"});
    EXPECT_EQ(desk.window.menusSet, 1);
    EXPECT_TRUE(desk.Item(Command::kRecorder).ticked);
    EXPECT_EQ(desk.window.updated, (Rect{0, 0, 240, 270}));
    desk.shell.OnPaint();
    desk.shell.OnPaint();
    EXPECT_EQ(desk.At(kRecorder).paints, 1);
    desk.loop.Advance(60);
    desk.shell.SelectScreen(kAbout);
    desk.shell.SetTimer(100);
    desk.loop.Advance(200);
    desk.shell.SetTimer(0);
    desk.loop.Advance(200);
    EXPECT_EQ(desk.At(kRecorder).ticks, 3);
    EXPECT_EQ(desk.At(kAbout).ticks, 2);
}

TEST(Shell, SelectingAScreenLeavesTheOtherOneAndChangesTheMenusOnce) {
    ShellDesk desk;
    desk.missing = {kClipEditor};
    desk.Open();
    desk.window.menusSet = 0;
    desk.shell.SelectScreen(kEditor);
    EXPECT_EQ(desk.log, (Log{"left 0", "entered 1"}));
    EXPECT_EQ(desk.window.menusSet, 1);
    EXPECT_FALSE(desk.Item(Command::kRecorder).ticked);
    EXPECT_TRUE(desk.Item(Command::kEditor).ticked);
    EXPECT_EQ(desk.shell.PreviousScreen(), kRecorder);

    desk.log.clear();
    desk.shell.TickScreen(kEditor, false);
    desk.shell.SelectScreen(kEditor);  // again: only its tick comes back
    desk.shell.SelectScreen(kClipEditor);
    desk.shell.SelectScreen(kTextEditor);
    EXPECT_EQ(desk.log, Log{});
    EXPECT_TRUE(desk.Item(Command::kEditor).ticked);
    EXPECT_EQ(desk.shell.CurrentScreen(), kEditor);
}

TEST(Shell, AnOpenTextEditorIsClosedFirstAndIsWhereTheUserComesFrom) {
    ShellDesk desk;
    desk.Open();
    EXPECT_TRUE(desk.Run(Command::kEditText));
    EXPECT_TRUE(desk.Run(Command::kEditText));
    EXPECT_TRUE(desk.Item(Command::kEditText).ticked);
    desk.shell.SelectScreen(kEditor);
    EXPECT_EQ(desk.log, (Log{"open text", "close text", "left 0", "entered 1"}));
    EXPECT_EQ(desk.shell.PreviousScreen(), kTextEditor);
    EXPECT_FALSE(desk.Item(Command::kEditText).ticked);
}

TEST(Shell, ThePointerBelongsToTheControlThatItPressed) {
    ShellDesk desk;
    desk.Open();
    desk.shell.OnPointerMove({3, 3});
    desk.shell.OnLeftUp({3, 3});
    desk.shell.OnLeftDown({25, 5});
    EXPECT_TRUE(desk.window.captured);
    desk.shell.OnLeftDown({5, 5});
    desk.shell.OnWheel({5, 5}, 1, false);
    desk.shell.OnWheel({25, 5}, 1, false);
    desk.shell.OnPointerMove({30, -100});
    desk.shell.OnLeftUp({30, -100});
    EXPECT_FALSE(desk.window.captured);
    desk.shell.OnPointerMove({31, 0});
    EXPECT_EQ(desk.log,
              (Log{"press second", "wheel second 25,5 1", "drag second 5,-105", "release second"}));

    desk.log.clear();
    desk.shell.OnLeftDown({100, 100});  // where no control is
    desk.shell.OnPointerMove({5, 5});
    desk.shell.OnLeftUp({5, 5});
    desk.shell.OnRightDown({1, 2});
    desk.shell.OnRightUp({3, 4});
    desk.shell.OnWheel({100, 100}, 1, false);
    desk.shell.OnWheel({25, 5}, -2, true);
    EXPECT_EQ(desk.log, (Log{"right down 1,2", "right up 3,4", "across second 25,5 -2"}));
}

TEST(Shell, AControlOfAScreenThatWasLeftIsNotReleased) {
    ShellDesk desk;
    desk.Open();
    desk.At(kRecorder).first->onPress = [&desk] { desk.shell.SelectScreen(kAbout); };
    desk.shell.OnLeftDown({5, 5});
    desk.shell.OnPointerMove({6, 6});
    desk.shell.OnLeftUp({6, 6});
    EXPECT_FALSE(desk.window.captured);
    EXPECT_EQ(desk.log, (Log{"press first", "left 0", "entered 4"}));
    desk.shell.SelectScreen(kRecorder);
    desk.log.clear();
    desk.shell.OnKeyDown(Key::kTab);
    desk.shell.OnKeyDown(Key::kSpace);
    EXPECT_EQ(desk.log, (Log{"press first", "left 0", "entered 4"}));
    EXPECT_EQ(desk.window.focus, Rect{});
}

TEST(Shell, TheKeyboardReachesEveryControlThatHasANameAndTakesThePointer) {
    ShellDesk desk;
    desk.Open();
    desk.shell.OnKeyDown(Key::kSpace);  // without a focus the screen's own
    desk.shell.OnKeyDown(Key::kTab);
    EXPECT_EQ(desk.window.focus, (Rect{0, 0, 10, 10}));
    desk.shell.OnKeyDown(Key::kSpace);
    desk.shell.OnKeyDown(Key::kTab);
    EXPECT_EQ(desk.window.focus, (Rect{20, 0, 10, 10}));
    desk.shell.OnKeyDown(Key::kPlus);
    desk.shell.OnKeyDown(Key::kMinus);
    desk.shell.OnKeyDown(Key::kTab);
    EXPECT_EQ(desk.window.focus, (Rect{0, 0, 10, 10}));
    desk.shell.OnKeyDown(Key::kTab, true);
    EXPECT_EQ(desk.window.focus, (Rect{20, 0, 10, 10}));
    EXPECT_EQ(desk.shell.Focused(), desk.At(kRecorder).second);
    desk.shell.OnKeyDown(Key::k9);
    desk.shell.OnKeyDown(Key::kEscape);
    EXPECT_EQ(desk.window.focus, Rect{});
    desk.shell.OnKeyDown(Key::kPlus);
    desk.shell.OnKeyDown(Key::kTab, true);  // backwards from nowhere: the last one
    EXPECT_EQ(desk.window.focus, (Rect{20, 0, 10, 10}));
    EXPECT_EQ(desk.log, (Log{"key 32", "press first", "release first", "step second 1",
                             "step second -1", "key 57", "key 187"}));
}

TEST(Shell, F1AndTheViewMenuListTheKeysOfEveryScreen) {
    ShellDesk desk;
    desk.missing = {kClipEditor};
    desk.Open();
    desk.shell.OnKeyDown(Key::kTab);
    desk.shell.OnKeyDown(Key::kF1);
    const std::vector<ShortcutGroup> shown = desk.dialogs.shortcuts;
    ASSERT_EQ(shown.size(), 4U);
    EXPECT_EQ(shown[0], (ShortcutGroup{u"Record", {{u"Enter", u"play"}, {u"1, Left", u"back"}}}));
    EXPECT_EQ(shown[1].title, u"Editor");
    EXPECT_EQ(shown[2].title, u"About");
    // What the window keeps for itself is in the list, and nothing else.
    Text own;
    for (int code = 1; code < 256; ++code) {
        const auto key = static_cast<Key>(code);
        desk.shell.OnKeyDown(Key::kTab);
        desk.log.clear();
        desk.shell.OnKeyDown(key);
        desk.shell.OnKeyUp(key);
        if (desk.log != Log{Format("key %d", code)}) own += NameOf(key) + u" ";
    }
    EXPECT_EQ(own, u"Tab Escape Space F1 + - Record key ");
    Text listed;
    for (const Shortcut& line : shown[3].shortcuts)
        listed += line.keys + u" ";
    EXPECT_EQ(listed, u"Tab, Shift+Tab Space +, - Escape Record key F1 ");

    desk.dialogs.shortcuts.clear();
    EXPECT_EQ(desk.window.menus.menus[3].items.back().command, Command::kShortcuts);
    EXPECT_TRUE(desk.Item(Command::kShortcuts).enabled);
    EXPECT_TRUE(desk.Run(Command::kShortcuts));
    EXPECT_EQ(desk.dialogs.shortcuts, shown);
}

TEST(Shell, TheRecordKeyOfTheHardwareActsWhenItIsLetGo) {
    ShellDesk desk;
    desk.Open();
    const auto state = [&desk] { return desk.app.transport.State(); };
    desk.shell.OnKeyDown(Key::kRecordButton);
    desk.shell.OnKeyUp(Key::k9);
    EXPECT_EQ(state(), TransportState::kStopped);
    desk.shell.OnKeyUp(Key::kRecordButton);
    EXPECT_EQ(state(), TransportState::kRecordReady);
    desk.shell.OnKeyUp(Key::kRecordButton);  // nothing is saved: the Record button once more
    desk.loop.RunPending();
    EXPECT_EQ(state(), TransportState::kStopped);
    desk.shell.OnKeyUp(Key::kRecordButton);
    desk.app.transport.Play(true);
    desk.Deliver(30);
    desk.shell.OnKeyUp(Key::kRecordButton);
    desk.loop.RunPending();
    EXPECT_EQ(state(), TransportState::kStopped);
    EXPECT_EQ(desk.app.clips.Count(), 1);
    desk.shell.SelectScreen(kProgress);
    desk.shell.OnKeyUp(Key::kRecordButton);  // not while a job runs
    EXPECT_EQ(state(), TransportState::kStopped);
}

TEST(Shell, EveryScreenHearsTheRecorderAndTheMenusFollowIt) {
    ShellDesk desk;
    desk.missing = {kClipEditor};
    desk.Open();
    EXPECT_TRUE(desk.Item(Command::kOpenProject).enabled);
    EXPECT_FALSE(desk.Item(Command::kMark).enabled);
    desk.app.transport.Record(true);
    desk.app.transport.Play(true);
    desk.Deliver(30);
    EXPECT_EQ(desk.At(kEditor).levels.size(), 30U);
    EXPECT_EQ(desk.At(kAbout).levels, desk.At(kRecorder).levels);
    EXPECT_FALSE(desk.Item(Command::kOpenProject).enabled);
    desk.app.transport.Stop(true);
    desk.loop.RunPending();
    EXPECT_TRUE(desk.Item(Command::kOpenProject).enabled);
    EXPECT_TRUE(desk.Item(Command::kMark).enabled);

    EXPECT_EQ(desk.shell.NextRange(), std::nullopt);
    desk.At(kEditor).next = PeriodRange{3, 9};
    ASSERT_TRUE(desk.shell.NextRange().has_value());
    EXPECT_EQ(desk.shell.NextRange()->end, 9U);
}

TEST(Shell, TheEditMenuOffersToDeleteTheMarkThatTheCursorStandsOn) {
    ShellDesk desk;
    desk.Open();
    desk.RecordTake();
    desk.app.recording.sheet.marks = {5, 12};
    for (const auto& [cursor, text] : {std::pair{5U, u"Delete marker"}, std::pair{6U, u"Mark"},
                                       std::pair{12U, u"Delete marker"}}) {
        desk.app.recording.cursor = cursor;
        const Menu& edit = desk.shell.OnMenuOpening(TopMenu::kEdit);
        EXPECT_EQ(edit.items.back().text, text) << cursor;
        EXPECT_TRUE(edit.items.back().enabled);
    }
}

TEST(Shell, AClosingWindowEndsATakeWithoutLosingAPeriod) {
    ShellDesk desk;
    desk.Open();
    desk.app.transport.Record(true);
    desk.app.transport.Play(true);
    desk.Deliver(31);
    desk.waves.in.flushOnReset = false;
    EXPECT_TRUE(desk.Run(Command::kExit));
    EXPECT_TRUE(desk.shell.IsQuitting());
    EXPECT_EQ(desk.loop.Run(), -1);  // the device still holds sound
    desk.waves.in.FlushReset();
    EXPECT_EQ(desk.loop.Run(), 0);
    EXPECT_TRUE(desk.app.recorder.IsClosed());
    EXPECT_EQ(desk.app.clips.Count(), 1);
}

TEST(Shell, ADeviceThatDoesNotAnswerHoldsTheWindowForAWhileOnly) {
    ShellDesk desk;
    desk.Open();
    desk.app.transport.Record(true);
    desk.app.transport.Play(true);
    desk.Deliver(31);
    desk.waves.in.flushOnReset = false;
    desk.shell.OnCloseRequest();
    desk.loop.Advance(Shell::kClosePatienceMs - 1);
    desk.shell.OnCloseRequest();
    EXPECT_EQ(desk.loop.Run(), -1);
    desk.loop.Advance(1);
    EXPECT_EQ(desk.loop.Run(), 0);
    desk.shell.Close();
    EXPECT_EQ(desk.app.clips.Count(), 1);

    ShellDesk idle;
    idle.Open();
    idle.shell.OnCloseRequest();
    EXPECT_EQ(idle.loop.Run(), 0);
}

}  // namespace
}  // namespace orma::test
