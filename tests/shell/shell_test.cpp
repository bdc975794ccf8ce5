#include <gtest/gtest.h>

#include "shell/shell_desk.h"

namespace orma::test {
namespace {

using enum ScreenIndex;

TEST_F(ShellTest, OpensOnTheRecorderAndTicksEvery20MsTheScreenThatIsCurrent) {
    EXPECT_EQ(window.menusSet, 1);
    EXPECT_TRUE(Item(Command::kRecorder).ticked);
    EXPECT_EQ(window.updated, (Rect{0, 0, 240, 270}));
    shell.OnPaint();
    shell.OnPaint();
    EXPECT_EQ(At(kRecorder).paints, 1);
    loop.Advance(60);
    shell.SelectScreen(kAbout);
    shell.SetTimer(100);
    loop.Advance(200);
    shell.SetTimer(0);
    loop.Advance(200);
    EXPECT_EQ(At(kRecorder).ticks, 3);
    EXPECT_EQ(At(kAbout).ticks, 2);
}

TEST_F(ShellTest, SelectingAScreenLeavesTheOtherOneAndChangesTheMenusOnce) {
    window.menusSet = 0;
    shell.SelectScreen(kEditor);
    EXPECT_EQ(log, (Log{"left 0", "entered 1"}));
    EXPECT_EQ(window.menusSet, 1);
    EXPECT_FALSE(Item(Command::kRecorder).ticked);
    EXPECT_TRUE(Item(Command::kEditor).ticked);
    EXPECT_EQ(shell.PreviousScreen(), kRecorder);

    log.clear();
    shell.TickScreen(kEditor, false);
    shell.SelectScreen(kEditor);  // again: only its tick comes back
    shell.SelectScreen(kTextEditor);
    EXPECT_EQ(log, Log{});
    EXPECT_TRUE(Item(Command::kEditor).ticked);
    EXPECT_EQ(shell.CurrentScreen(), kEditor);
}

TEST_F(ShellTest, AnOpenTextEditorIsClosedFirstAndIsWhereTheUserComesFrom) {
    Choose(Command::kEditText);
    Choose(Command::kEditText);
    EXPECT_TRUE(Item(Command::kEditText).ticked);
    shell.SelectScreen(kEditor);
    EXPECT_EQ(log, (Log{"open text", "close text", "left 0", "entered 1"}));
    EXPECT_EQ(shell.PreviousScreen(), kTextEditor);
    EXPECT_FALSE(Item(Command::kEditText).ticked);
}

TEST_F(ShellTest, ThePointerBelongsToTheControlThatItPressed) {
    shell.OnPointerMove({3, 3});
    shell.OnLeftUp({3, 3});
    shell.OnLeftDown({25, 5});
    EXPECT_TRUE(window.captured);
    shell.OnLeftDown({5, 5});
    shell.OnWheel({5, 5}, 1, false);
    shell.OnWheel({25, 5}, 1, false);
    shell.OnPointerMove({30, -100});
    shell.OnLeftUp({30, -100});
    EXPECT_FALSE(window.captured);
    shell.OnPointerMove({31, 0});
    EXPECT_EQ(log,
              (Log{"press second", "wheel second 25,5 1", "drag second 5,-105", "release second"}));

    log.clear();
    shell.OnLeftDown({100, 100});  // where no control is
    shell.OnPointerMove({5, 5});
    shell.OnLeftUp({5, 5});
    shell.OnRightDown({1, 2});
    shell.OnRightUp({3, 4});
    shell.OnWheel({100, 100}, 1, false);
    shell.OnWheel({25, 5}, -2, true);
    EXPECT_EQ(log, (Log{"right down 1,2", "right up 3,4", "across second 25,5 -2"}));
}

TEST_F(ShellTest, AControlOfAScreenThatWasLeftIsNotReleased) {
    At(kRecorder).first->onPress = [&] { shell.SelectScreen(kAbout); };
    shell.OnLeftDown({5, 5});
    shell.OnPointerMove({6, 6});
    shell.OnLeftUp({6, 6});
    EXPECT_FALSE(window.captured);
    EXPECT_EQ(log, (Log{"press first", "left 0", "entered 4"}));
    shell.SelectScreen(kRecorder);
    log.clear();
    shell.OnKeyDown(Key::kTab);
    shell.OnKeyDown(Key::kSpace);
    EXPECT_EQ(log, (Log{"press first", "left 0", "entered 4"}));
    EXPECT_EQ(window.focus, Rect{});
}

TEST_F(ShellTest, TheKeyboardReachesEveryControlThatHasANameAndTakesThePointer) {
    shell.OnKeyDown(Key::kSpace);  // without a focus the screen's own
    shell.OnKeyDown(Key::kTab);
    EXPECT_EQ(window.focus, (Rect{0, 0, 10, 10}));
    shell.OnKeyDown(Key::kSpace);
    shell.OnKeyDown(Key::kTab);
    EXPECT_EQ(window.focus, (Rect{20, 0, 10, 10}));
    shell.OnKeyDown(Key::kPlus);
    shell.OnKeyDown(Key::kMinus);
    shell.OnKeyDown(Key::kTab);
    EXPECT_EQ(window.focus, (Rect{0, 0, 10, 10}));
    shell.OnKeyDown(Key::kTab, true);
    EXPECT_EQ(window.focus, (Rect{20, 0, 10, 10}));
    EXPECT_EQ(shell.Focused(), At(kRecorder).second);
    shell.OnKeyDown(Key::k9);
    shell.OnKeyDown(Key::kEscape);
    EXPECT_EQ(window.focus, Rect{});
    shell.OnKeyDown(Key::kPlus);
    shell.OnKeyDown(Key::kTab, true);  // backwards from nowhere: the last one
    EXPECT_EQ(window.focus, (Rect{20, 0, 10, 10}));
    EXPECT_EQ(log, (Log{"key 32", "press first", "release first", "step second 1", "step second -1",
                        "key 57", "key 187"}));
}

TEST_F(ShellTest, F1AndTheViewMenuListTheKeysOfEveryScreen) {
    shell.OnKeyDown(Key::kTab);
    shell.OnKeyDown(Key::kF1);
    const std::vector<ShortcutGroup> shown = dialogs.shortcuts;
    ASSERT_EQ(shown.size(), 5U);
    EXPECT_EQ(shown[0], (ShortcutGroup{u"Record", {{u"Enter", u"play"}, {u"1, Left", u"back"}}}));
    EXPECT_GT(shown[2].shortcuts.size(), 2U) << "and the clip list's own";
    dialogs.shortcuts.clear();
    EXPECT_EQ(window.menus.menus[3].items.back().command, Command::kShortcuts);
    EXPECT_TRUE(Item(Command::kShortcuts).enabled);
    Choose(Command::kShortcuts);
    EXPECT_EQ(dialogs.shortcuts, shown);
}

TEST_F(ShellTest, TheRecordKeyOfTheHardwareActsWhenItIsLetGo) {
    const auto state = [&] { return app.transport.State(); };
    shell.OnKeyDown(Key::kRecordButton);
    shell.OnKeyUp(Key::k9);
    EXPECT_EQ(state(), TransportState::kStopped);
    shell.OnKeyUp(Key::kRecordButton);
    EXPECT_EQ(state(), TransportState::kRecordReady);
    shell.OnKeyUp(Key::kRecordButton);  // nothing is saved: the Record button once more
    loop.RunPending();
    EXPECT_EQ(state(), TransportState::kStopped);
    shell.OnKeyUp(Key::kRecordButton);
    app.transport.Play(true);
    Deliver(30);
    shell.OnKeyUp(Key::kRecordButton);
    loop.RunPending();
    EXPECT_EQ(state(), TransportState::kStopped);
    EXPECT_EQ(app.clips.Count(), 1);
    shell.SelectScreen(kProgress);
    shell.OnKeyUp(Key::kRecordButton);  // not while a job runs
    EXPECT_EQ(state(), TransportState::kStopped);
}

TEST_F(ShellTest, EveryScreenHearsTheRecorderAndTheMenusFollowIt) {
    EXPECT_TRUE(Item(Command::kOpenProject).enabled);
    EXPECT_FALSE(Item(Command::kMark).enabled);
    app.transport.Record(true);
    app.transport.Play(true);
    Deliver(30);
    EXPECT_EQ(At(kEditor).levels.size(), 30U);
    EXPECT_EQ(At(kAbout).levels, At(kRecorder).levels);
    EXPECT_FALSE(Item(Command::kOpenProject).enabled);
    app.transport.Stop(true);
    loop.RunPending();
    EXPECT_TRUE(Item(Command::kOpenProject).enabled);
    EXPECT_TRUE(Item(Command::kMark).enabled);

    EXPECT_EQ(shell.NextRange(), std::nullopt);
    At(kEditor).next = PeriodRange{3, 9};
    ASSERT_TRUE(shell.NextRange().has_value());
    EXPECT_EQ(shell.NextRange()->end, 9U);
}

TEST_F(ShellTest, TheEditMenuOffersToDeleteTheMarkThatTheCursorStandsOn) {
    RecordTake();
    shell.SelectScreen(kEditor);
    app.recording.sheet.marks = {5, 12};
    for (const auto& [cursor, text] : {std::pair{6U, u"Mark"}, {12U, u"Delete marker"}}) {
        app.recording.cursor = cursor;
        const Menu& edit = shell.OnMenuOpening(TopMenu::kEdit);
        EXPECT_EQ(edit.items.back().text, text);
        EXPECT_EQ(edit.items.front().text, u"Crop begin");
    }
}

struct ClosingTest : ShellTest {
    /// The user closes the window during a take, of which the device still holds sound.
    ClosingTest() {
        app.transport.Record(true);
        app.transport.Play(true);
        Deliver(31);
        waves.in.flushOnReset = false;
        Choose(Command::kExit);
    }
};

TEST_F(ClosingTest, ATakeEndsWithoutLosingAPeriod) {
    EXPECT_TRUE(shell.IsQuitting());
    EXPECT_EQ(loop.Run(), -1);
    waves.in.FlushReset();
    EXPECT_EQ(loop.Run(), 0);
    EXPECT_TRUE(app.recorder.IsClosed());
    EXPECT_EQ(app.clips.Count(), 1);
}

TEST_F(ClosingTest, ADeviceThatDoesNotAnswerHoldsTheWindowForAWhileOnly) {
    loop.Advance(Shell::kClosePatienceMs - 1);
    shell.OnCloseRequest();
    EXPECT_EQ(loop.Run(), -1);
    loop.Advance(1);
    EXPECT_EQ(loop.Run(), 0);
    shell.Close();
    EXPECT_EQ(app.clips.Count(), 1);
}

}  // namespace
}  // namespace orma::test
