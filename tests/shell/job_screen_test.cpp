#include "shell/job_screen.h"

#include <gtest/gtest.h>

#include "shell/shell_desk.h"

namespace orma::test {
namespace {

/// A progress screen's side of a job; the user does `meanwhile` at each look.
struct Watcher : PublishProgress {
    void SetText(const Text&) override {}
    void SetRange(std::uint32_t) override {}
    void Step(std::uint32_t) override {}
    [[nodiscard]] bool IsCancelled() override {
        meanwhile();
        return false;
    }

    std::function<void()> meanwhile = [] {};
};

struct JobScreenTest : ShellTest {
    JobScreenTest() {
        RecordTake();
        app.settings.PublishToFile = 1;
        app.recording.selectionEnd = 30;
        progress.ShowOn(&watcher);
        shell.SelectScreen(ScreenIndex::kEditor);
        log.clear();
    }

    [[nodiscard]] Bytes Published() {
        const Text path = folder.Path(u"pub_city.wav");
        return storage.Exists(path) ? ReadFileBytes(path) : Bytes();
    }

    Watcher watcher;
};

TEST_F(JobScreenTest, TheProgressScreenIsCurrentWhileAJobSendsAndThenTheOneBefore) {
    int looks = 0;
    watcher.meanwhile = [&] {
        EXPECT_EQ(shell.CurrentScreen(), ScreenIndex::kProgress);
        EXPECT_FALSE(Item(Command::kExit).enabled);
        ++looks;
    };
    Choose(Command::kClipToFile);
    EXPECT_GT(looks, 0);
    EXPECT_FALSE(Published().empty());
    EXPECT_EQ(log, (Log{"left 1", "entered 5", "end job", "left 5", "entered 1", "refreshed 1"}));
    EXPECT_TRUE(Item(Command::kExit).enabled);
    ASSERT_EQ(window.notes.size(), 1U);
    EXPECT_EQ(window.notes[0].headline, u"Published to a file");
    EXPECT_EQ(window.notes[0].detail, folder.Path(u"pub_city.wav"));

    log.clear();
    app.recording.selectionStart = 30;
    Choose(Command::kClipToFile);
    EXPECT_EQ(log, Log{"refreshed 1"}) << "refused before anything is sent";
    EXPECT_EQ(boxes.Texts(), Texts{u"Nothing recorded or selected"});
    EXPECT_EQ(window.notes.size(), 1U) << "nothing is claimed";
}

TEST_F(JobScreenTest, ARecordingWithoutASelectionIsPublishedWhole) {
    app.recording.selectionEnd = app.recording.length;
    Choose(Command::kClipToFile);
    const std::size_t whole = Published().size();
    app.recording.selectionEnd = 0;
    Choose(Command::kClipToFile);
    EXPECT_EQ(Published().size(), whole);
    EXPECT_EQ(app.recording.selectionEnd, 0U);
    EXPECT_EQ(boxes.Texts(), Texts{});
}

TEST_F(JobScreenTest, TheEndOfTheProgramCancelsTheJobAndThenComes) {
    watcher.meanwhile = [&] { shell.OnCloseRequest(); };
    Choose(Command::kClipToFile);
    EXPECT_TRUE(Published().empty());
    EXPECT_TRUE(window.notes.empty()) << "nothing is claimed";
    EXPECT_EQ(loop.Run(), 0);
}

// Cancel is pressed and held until the job is over; the next press must be one.
TEST_F(JobScreenTest, APressFromTheJobIsForgottenWithIt) {
    watcher.meanwhile = [&] { shell.OnLeftDown({5, 5}); };
    Choose(Command::kClipToFile);
    log.clear();
    shell.OnLeftUp({5, 5});
    shell.OnLeftDown({25, 5});
    EXPECT_EQ(log, Log{"press second"});
}

}  // namespace
}  // namespace orma::test
