#include "shell/job_screen.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "shell/shell_desk.h"

namespace orma::test {
namespace {

/// A progress screen's side of a job; the user does `meanwhile` at each look.
class Watcher : public PublishProgress {
  public:
    void SetText(const Text& text) override { texts.push_back(text); }
    void SetRange(std::uint32_t) override {}
    void Step(std::uint32_t) override {}
    [[nodiscard]] bool IsCancelled() override {
        ++looks;
        if (meanwhile) meanwhile();
        return cancelled;
    }

    std::vector<Text> texts;
    int looks = 0;
    bool cancelled = false;
    std::function<void()> meanwhile;
};

struct JobDesk : ShellDesk {
    JobDesk() {
        Open();
        RecordTake();
        app.settings.PublishToFile = 1;
        app.recording.selectionEnd = 30;
        progress.ShowOn(&watcher);
        shell.SelectScreen(ScreenIndex::kEditor);
        log.clear();
    }

    [[nodiscard]] bool IsPublished() { return storage.Exists(folder.Path(u"pub_city.wav")); }

    Watcher watcher;
};

TEST(JobScreen, TheProgressScreenIsCurrentWhileAJobSendsAndThenTheOneBefore) {
    JobDesk desk;
    desk.watcher.meanwhile = [&] {
        EXPECT_EQ(desk.shell.CurrentScreen(), ScreenIndex::kProgress);
        EXPECT_FALSE(desk.Item(Command::kExit).enabled);
    };
    EXPECT_TRUE(desk.Run(Command::kClipToFile));
    EXPECT_GT(desk.watcher.looks, 0);
    EXPECT_TRUE(desk.IsPublished());
    EXPECT_EQ(desk.log,
              (Log{"left 1", "entered 5", "end job", "left 5", "entered 1", "refreshed 1"}));
    EXPECT_TRUE(desk.Item(Command::kExit).enabled);
    ASSERT_EQ(desk.window.notes.size(), 1U);
    EXPECT_EQ(desk.window.notes[0].headline, u"Published to a file");
    EXPECT_EQ(desk.window.notes[0].detail, desk.folder.Path(u"pub_city.wav"));
    desk.window.notes.clear();

    desk.log.clear();
    desk.app.recording.selectionStart = 30;
    EXPECT_TRUE(desk.Run(Command::kClipToFile));
    EXPECT_EQ(desk.log, Log{"refreshed 1"}) << "refused before anything is sent";
    EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{u"Nothing recorded or selected"});
    EXPECT_TRUE(desk.window.notes.empty());
}

TEST(JobScreen, ARecordingWithoutASelectionIsPublishedWhole) {
    JobDesk desk;
    const auto published = [&] {
        EXPECT_TRUE(desk.Run(Command::kClipToFile));
        std::uint64_t bytes = 0;
        std::unique_ptr<StorageFile> file;
        EXPECT_EQ(desk.storage.Open(desk.folder.Path(u"pub_city.wav"), {}, file), 0);
        EXPECT_EQ(file->Size(bytes), 0);
        return bytes;
    };
    const CurrentRecording& recording = desk.app.recording;
    desk.app.recording.selectionEnd = recording.length;
    const std::uint64_t whole = published();
    desk.app.recording.selectionEnd = 0;
    EXPECT_TRUE(desk.Item(Command::kPublishClip).enabled);
    EXPECT_EQ(published(), whole);
    EXPECT_EQ(recording.selectionEnd, 0U);
    EXPECT_THAT(desk.boxes.Texts(), testing::IsEmpty());
}

TEST(JobScreen, ACancelledJobComesBackToo) {
    JobDesk desk;
    desk.watcher.cancelled = true;
    EXPECT_TRUE(desk.Run(Command::kClipToFile));
    EXPECT_EQ(desk.shell.CurrentScreen(), ScreenIndex::kEditor);
    EXPECT_FALSE(desk.IsPublished());
    EXPECT_EQ(desk.boxes.Texts(),
              std::vector<Text>{u"Publishing was cancelled.\nNo file was published."});
    EXPECT_TRUE(desk.window.notes.empty()) << "nothing is claimed";
}

TEST(JobScreen, TheEndOfTheProgramCancelsTheJobAndThenComes) {
    JobDesk desk;
    desk.watcher.meanwhile = [&] { desk.shell.OnCloseRequest(); };
    EXPECT_TRUE(desk.Run(Command::kClipToFile));
    EXPECT_FALSE(desk.IsPublished());
    EXPECT_EQ(desk.loop.Run(), 0);
}

// Cancel is pressed and held until the job is over; the next press must be one.
TEST(JobScreen, APressFromTheJobIsForgottenWithIt) {
    JobDesk desk;
    desk.watcher.meanwhile = [&] { desk.shell.OnLeftDown({5, 5}); };
    EXPECT_TRUE(desk.Run(Command::kClipToFile));
    desk.log.clear();
    desk.shell.OnLeftUp({5, 5});
    desk.shell.OnLeftDown({25, 5});
    EXPECT_EQ(desk.log, Log{"press second"});
}

TEST(JobScreen, WithoutAProgressScreenTheJobRunsAllTheSame) {
    JobDesk desk;
    desk.progress.ShowOn(nullptr);
    EXPECT_TRUE(desk.Run(Command::kClipToFile));
    EXPECT_TRUE(desk.IsPublished());
}

}  // namespace
}  // namespace orma::test
