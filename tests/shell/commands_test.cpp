#include <filesystem>

#include <gtest/gtest.h>

#include "project/undo.h"
#include "shell/shell_desk.h"

namespace orma::test {
namespace {

TEST(Commands, KnownNumbersAloneAreHandled) {
    ShellDesk desk;
    desk.Open();
    for (const std::uint32_t id : {0U, 1U, 40006U, 40012U, 40021U, 40064U, 4'294'967'295U})
        EXPECT_FALSE(desk.shell.OnCommand(id)) << id;
    EXPECT_EQ(desk.log, Log{});
    for (const Command command : kEveryCommand)
        EXPECT_TRUE(desk.Run(command)) << int(command);
}

TEST(Commands, OpenTheirScreenOrDialog) {
    struct Case {
        Command command;
        Log log;
    };
    const Case cases[] = {
        {Command::kRecorder, {}},
        {Command::kEditor, {"left 0", "entered 1"}},
        {Command::kClipEditor, {"left 0", "entered 2"}},
        {Command::kAbout, {"left 0", "entered 4"}},
        {Command::kEditText, {"open text"}},
        {Command::kOpenProject, {"open project"}},
        {Command::kNewProject, {"new project"}},
        {Command::kOpenClip, {"open clip"}},
        {Command::kDelete, {"delete"}},
        {Command::kInputOptions, {"input options", "refreshed 0"}},
        {Command::kListView, {}},
        {Command::kNone, {}},
    };
    for (const Case& one : cases) {
        ShellDesk desk;
        desk.Open();
        EXPECT_TRUE(desk.Run(one.command));
        EXPECT_EQ(desk.log, one.log) << int(one.command);
        EXPECT_EQ(desk.boxes.Texts(), std::vector<Text>{}) << int(one.command);
    }
}

TEST(Commands, NewsOfTheListGoToTheClipEditorWhileItIsCurrent) {
    ShellDesk desk;
    desk.Open();
    EXPECT_TRUE(desk.Run(Command::kListView, 7));
    desk.shell.SelectScreen(ScreenIndex::kClipEditor);
    desk.log.clear();
    EXPECT_TRUE(desk.Run(Command::kListView, 101));
    EXPECT_EQ(desk.log, Log{"list 101 2"});
}

TEST(Commands, RecordStartsOnlyWithARecorderThatIsReady) {
    ShellDesk desk;
    desk.missing = {ScreenIndex::kRecorder};
    desk.Open();
    EXPECT_TRUE(desk.Run(Command::kRecord));
    EXPECT_EQ(desk.app.transport.State(), TransportState::kStopped);
    ShellDesk ready;
    ready.Open();
    EXPECT_TRUE(ready.Run(Command::kRecord));
    EXPECT_EQ(ready.app.transport.State(), TransportState::kRecordReady);
    EXPECT_TRUE(ready.Run(Command::kRecord));  // it is not a second press of the button
    EXPECT_EQ(ready.app.transport.State(), TransportState::kRecordReady);
}

TEST(Commands, FilesAreHandledByPathAndTheScreenShowsWhatIsCurrentThen) {
    ShellDesk desk;
    desk.Open();
    desk.RecordTake();
    Application& app = desk.app;
    const Text take = app.recording.audioPath;

    desk.shell.SelectScreen(ScreenIndex::kEditor);
    desk.dialogs.answers = {desk.folder.Path(u"pier.opr")};
    desk.editor.isOpen = true;
    EXPECT_TRUE(desk.Run(Command::kNewProject));
    EXPECT_EQ(desk.dialogs.proposed, desk.folder.Path(u"city.opr"));
    EXPECT_EQ(app.project.Name(), u"pier");
    EXPECT_EQ(desk.shell.CurrentScreen(), ScreenIndex::kRecorder);
    EXPECT_FALSE(desk.editor.isOpen);

    desk.dialogs.answers = {desk.folder.Path(u"city.opr")};
    desk.log.clear();
    EXPECT_TRUE(desk.Run(Command::kOpenProject));
    EXPECT_EQ(app.project.Name(), u"city");
    EXPECT_EQ(app.clips.Count(), 1);
    EXPECT_NE(std::ranges::find(desk.log, "refreshed 0"), desk.log.end());

    app.recording.selectionStart = 0;
    app.recording.selectionEnd = 30;
    desk.dialogs.answers = {desk.folder.Path(u"part.wav")};
    EXPECT_TRUE(desk.Run(Command::kSaveSelection));
    EXPECT_EQ(desk.dialogs.proposed, WithExtension(take, {}) + u"_S.wav");
    desk.dialogs.answers = {desk.folder.Path(u"part.wav")};
    EXPECT_TRUE(desk.Run(Command::kOpenClip));
    EXPECT_EQ(app.recording.length, 30U);

    desk.boxes.answers = {BoxAnswer::kOk};
    desk.dialogs.answers = {desk.folder.Path(u"part.wav")};
    EXPECT_TRUE(desk.Run(Command::kDelete));
    EXPECT_FALSE(desk.storage.Exists(desk.folder.Path(u"part.wav")));
    EXPECT_TRUE(desk.storage.Exists(take));
}

TEST(Commands, WhatIsSavedIsProposedWhereTheUserFindsItAgain) {
    ShellDesk desk;
    desk.Open();
    Application& app = desk.app;
    const auto proposed = [&](Command command) {
        desk.dialogs.proposed.clear();
        EXPECT_TRUE(desk.Run(command));
        return desk.dialogs.proposed;
    };
    const Text hidden = desk.folder.Path(u".local/orma/");
    const Text documents = desk.folder.Path(u"Documents/");
    const Text card = desk.folder.Path(u"card/");
    std::filesystem::create_directory(desk.folder.Native(u"Documents"));
    desk.dialogs.documents = documents;
    app.programFolder = hidden;
    app.settings.ProjectsFolder = hidden;  // as settings have it that name none
    app.project.SetPath(hidden, u"default");
    EXPECT_EQ(proposed(Command::kNewProject), documents + u"default.opr");

    app.recording.audioPath = hidden + u"default00.wav";
    app.recording.length = app.recording.selectionEnd = 30;
    EXPECT_EQ(proposed(Command::kSaveSelection), documents + u"default00_S.wav");
    app.recording.audioPath = card + u"news00.mp2";
    EXPECT_EQ(proposed(Command::kSaveSelection), card + u"news00_S.mp2");

    app.project.SetPath(card, u"news");
    EXPECT_EQ(proposed(Command::kNewProject), card + u"news.opr");
    app.settings.ProjectsFolder = desk.folder.Path(u".house");
    EXPECT_EQ(proposed(Command::kNewProject), desk.folder.Path(u".house/news.opr"));
}

TEST(Commands, BusyOrWithoutASelectionNoDialogIsShown) {
    ShellDesk desk;
    desk.Open();
    EXPECT_TRUE(desk.Run(Command::kSaveSelection));
    EXPECT_TRUE(desk.Run(Command::kCopyToClipEditor));
    EXPECT_EQ(desk.boxes.Texts(), (std::vector<Text>{u"Nothing selected", u"Nothing selected"}));
    desk.RecordTake();
    desk.boxes.shown.clear();
    desk.app.recording.selectionEnd = 20;
    desk.app.transport.Record(true);
    desk.app.transport.Play(true);
    desk.Deliver(3);
    const std::uint32_t marks = static_cast<std::uint32_t>(desk.app.recording.sheet.marks.size());
    desk.log.clear();
    for (const Command command : kEveryCommand)
        if (command > Command::kExit) {
            EXPECT_TRUE(desk.Run(command));
        }
    EXPECT_EQ(desk.log, Log{});
    EXPECT_EQ(desk.boxes.Texts(),
              (std::vector<Text>{u"MenuOpen", u"MenuNewProject", u"MenuDelete", u"MenuSaveSelAs",
                                 u"MenuPublishCliplist", u"MenuOpen", u"MenuPublishCliplist"}));
    EXPECT_EQ(desk.app.recording.sheet.marks.size(), marks);
    EXPECT_TRUE(desk.app.recording.sheet.cuts.empty());
    EXPECT_TRUE(desk.app.recorder.IsSaving());
}

TEST(Commands, EditingWorksAtTheCursorAndThePlayerFollowsIt) {
    ShellDesk desk;
    desk.Open();
    desk.RecordTake();
    Application& app = desk.app;
    CurrentRecording& recording = app.recording;
    app.settings.OneSecondCut = 1;
    const auto run = [&](Command command, std::int32_t at) {
        app.transport.MoveTo(at);
        desk.log.clear();
        EXPECT_TRUE(desk.Run(command));
        EXPECT_EQ(desk.log.back(), "refreshed 0");
        EXPECT_EQ(static_cast<std::uint32_t>(app.player.Position()), recording.cursor);
    };
    run(Command::kMark, 7);
    EXPECT_EQ(recording.sheet.marks, std::vector<std::uint32_t>{7});
    EXPECT_EQ(desk.Item(Command::kMark).text, u"Delete marker");
    run(Command::kMark, 7);
    EXPECT_TRUE(recording.sheet.marks.empty());
    EXPECT_TRUE(CanUndo(app.project));
    run(Command::kCutBegin, 10);
    ASSERT_EQ(recording.sheet.cuts.size(), 1U);
    EXPECT_EQ(recording.sheet.cuts[0].begin, 10U);
    EXPECT_EQ(recording.sheet.cuts[0].end, 30U);  // a second
    EXPECT_EQ(recording.cursor, 30U);
    recording.sheet.cuts.clear();
    recording.currentCut = -1;
    run(Command::kCutEnd, 25);
    ASSERT_EQ(recording.sheet.cuts.size(), 1U);
    EXPECT_EQ(recording.cursor, 5U);
    recording.sheet.cuts.clear();
    recording.currentCut = -1;
    app.settings.OneSecondCut = 0;
    run(Command::kCutBegin, 10);
    run(Command::kCutEnd, 22);
    ASSERT_EQ(recording.sheet.cuts.size(), 1U) << "both ends of one cut";
    EXPECT_EQ(recording.sheet.cuts[0].end, 22U);
    run(Command::kCropBegin, 3);
    run(Command::kCropEnd, 38);
    EXPECT_EQ(recording.selectionStart, 3U);
    EXPECT_EQ(recording.selectionEnd, 38U);
    EXPECT_EQ(app.clips.Current()->begin, 3U);
}

TEST(Commands, ACopyForTheClipEditorTakesTheConfirmedName) {
    ShellDesk desk;
    desk.Open();
    desk.RecordTake();
    desk.app.recording.selectionEnd = 20;
    EXPECT_TRUE(desk.Run(Command::kCopyToClipEditor));  // cancelled
    EXPECT_EQ(desk.app.clips.Count(), 1);
    desk.dialogs.answers = {u"the mayor"};
    EXPECT_TRUE(desk.Run(Command::kCopyToClipEditor));
    EXPECT_EQ(desk.dialogs.proposed, u"city00-1");
    ASSERT_EQ(desk.app.clips.Count(), 2);
    EXPECT_EQ(desk.app.clips.Current()->title, u"the mayor");
}

// Each job meets its own first obstacle here: no images, a destination dialog that is cancelled, an
// option that is off.
TEST(Commands, EachPublishCommandIsItsOwnJob) {
    struct Case {
        Command command;
        int dialogs;
        bool file;
    };
    for (const Case& one :
         {Case{Command::kPublishClip, 1, false}, Case{Command::kPublishClipList, 1, false},
          Case{Command::kImage, 1, false}, Case{Command::kClipToFile, 0, true},
          Case{Command::kClipListToFile, 0, true}, Case{Command::kFastClip, 0, false},
          Case{Command::kFastClipList, 0, false}}) {
        ShellDesk desk;
        desk.Open();
        desk.RecordTake();
        desk.app.settings.PublishToFile = 1;
        desk.app.settings.FtpServer = u"ftp.radio.invalid";
        desk.app.recording.selectionEnd = 30;
        desk.editor.isOpen = true;
        EXPECT_TRUE(desk.Run(one.command));
        EXPECT_FALSE(desk.editor.isOpen) << int(one.command);
        EXPECT_EQ(desk.publishing.shown, one.dialogs) << int(one.command);
        EXPECT_EQ(desk.storage.Exists(desk.folder.Path(u"pub_city.wav")), one.file)
            << int(one.command);
    }
}

}  // namespace
}  // namespace orma::test
