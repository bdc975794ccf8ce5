#include <filesystem>

#include <gtest/gtest.h>

#include "project/undo.h"
#include "shell/shell_desk.h"

namespace orma::test {
namespace {

using CommandsTest = ShellTest;

TEST_F(CommandsTest, OpenTheirScreenOrDialogAndOtherNumbersNothing) {
    const std::pair<Command, Log> cases[] = {
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
    for (const auto& [command, wanted] : cases) {
        Choose(command);
        EXPECT_EQ(log, wanted) << int(command);
        shell.SelectScreen(ScreenIndex::kRecorder);
        log.clear();
    }
    for (const std::uint32_t id : {0U, 40006U, 40012U, 4'294'967'295U})
        EXPECT_FALSE(shell.OnCommand(id)) << id;
    EXPECT_EQ(boxes.Texts(), Texts{});
    shell.SelectScreen(ScreenIndex::kClipEditor);
    Choose(Command::kListView, 101);
    EXPECT_EQ(log.back(), "list 101 2");
    Choose(Command::kRecord);
    Choose(Command::kRecord);  // no second press of the button
    EXPECT_EQ(app.transport.State(), TransportState::kRecordReady);
}

TEST_F(CommandsTest, FilesAreHandledByPathAndTheScreenShowsWhatIsCurrentThen) {
    RecordTake();
    const Text take = app.recording.audioPath;
    shell.SelectScreen(ScreenIndex::kEditor);
    dialogs.answers = {folder.Path(u"pier.opr")};
    editor.isOpen = true;
    Choose(Command::kNewProject);
    EXPECT_EQ(dialogs.proposed, folder.Path(u"city.opr"));
    EXPECT_EQ(app.project.Name(), u"pier");
    EXPECT_EQ(shell.CurrentScreen(), ScreenIndex::kRecorder);
    EXPECT_FALSE(editor.isOpen);

    dialogs.answers = {folder.Path(u"city.opr")};
    log.clear();
    Choose(Command::kOpenProject);
    EXPECT_EQ(app.project.Name(), u"city");
    EXPECT_EQ(app.clips.Count(), 1);
    EXPECT_NE(std::ranges::find(log, "refreshed 0"), log.end());

    app.recording.selectionStart = 0;
    app.recording.selectionEnd = 30;
    const Text part = folder.Path(u"part.wav");
    dialogs.answers = {part, part, part};
    Choose(Command::kSaveSelection);
    EXPECT_EQ(dialogs.proposed, WithExtension(take, {}) + u"_S.wav");
    Choose(Command::kOpenClip);
    EXPECT_EQ(app.recording.length, 30U);
    boxes.answers = {BoxAnswer::kOk};
    Choose(Command::kDelete);
    EXPECT_FALSE(storage.Exists(part));
    EXPECT_TRUE(storage.Exists(take));
}

TEST_F(CommandsTest, WhatIsSavedIsProposedWhereTheUserFindsItAgain) {
    const auto proposed = [&](Command command) {
        Choose(command);
        return dialogs.proposed;
    };
    const Text hidden = folder.Path(u".local/orma/");
    const Text documents = folder.Path(u"Documents/");
    const Text card = folder.Path(u"card/");
    std::filesystem::create_directory(folder.Native(u"Documents"));
    dialogs.documents = documents;
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
    app.settings.ProjectsFolder = folder.Path(u".house");
    EXPECT_EQ(proposed(Command::kNewProject), folder.Path(u".house/news.opr"));
}

TEST_F(CommandsTest, BusyOrWithoutASelectionNoDialogIsShown) {
    Choose(Command::kSaveSelection);
    Choose(Command::kCopyToClipEditor);
    EXPECT_EQ(boxes.Texts(), (Texts{u"Nothing selected", u"Nothing selected"}));
    RecordTake();
    boxes.shown.clear();
    app.recording.selectionEnd = 20;
    app.transport.Record(true);
    app.transport.Play(true);
    Deliver(3);
    log.clear();
    const auto first = static_cast<std::uint32_t>(Command::kOpenProject);
    const auto last = static_cast<std::uint32_t>(Command::kFastClipList);
    for (std::uint32_t id = first; id <= last; ++id)
        (void)shell.OnCommand(id);
    EXPECT_EQ(log, Log{});
    EXPECT_EQ(boxes.Texts(), (Texts{u"MenuOpen", u"MenuNewProject", u"MenuDelete", u"MenuSaveSelAs",
                                    u"MenuPublishCliplist", u"MenuOpen", u"MenuPublishCliplist"}));
    EXPECT_TRUE(app.recording.sheet.marks.empty());
    EXPECT_TRUE(app.recording.sheet.cuts.empty());
    EXPECT_TRUE(app.recorder.IsSaving());
}

TEST_F(CommandsTest, EditingWorksAtTheCursorAndThePlayerFollowsIt) {
    RecordTake();
    CurrentRecording& recording = app.recording;
    app.settings.OneSecondCut = 1;
    const auto run = [&](Command command, std::int32_t at) {
        app.transport.MoveTo(at);
        log.clear();
        Choose(command);
        EXPECT_EQ(log.back(), "refreshed 0");
        EXPECT_EQ(static_cast<std::uint32_t>(app.player.Position()), recording.cursor);
    };
    const auto takeCut = [&] {
        EXPECT_EQ(recording.sheet.cuts.size(), 1U) << "both ends of one cut";
        recording.currentCut = -1;
        return std::exchange(recording.sheet.cuts, {}).at(0);
    };
    run(Command::kMark, 7);
    EXPECT_EQ(recording.sheet.marks, std::vector<std::uint32_t>{7});
    EXPECT_EQ(Item(Command::kMark).text, u"Delete marker");
    run(Command::kMark, 7);
    EXPECT_TRUE(recording.sheet.marks.empty());
    EXPECT_TRUE(CanUndo(app.project));
    run(Command::kCutBegin, 10);
    EXPECT_EQ(recording.cursor, 30U);  // a second
    EXPECT_EQ(takeCut().begin, 10U);
    run(Command::kCutEnd, 25);
    EXPECT_EQ(recording.cursor, 5U);
    EXPECT_EQ(takeCut().end, 25U);
    app.settings.OneSecondCut = 0;
    run(Command::kCutBegin, 10);
    run(Command::kCutEnd, 22);
    EXPECT_EQ(takeCut().end, 22U);
    run(Command::kCropBegin, 3);
    run(Command::kCropEnd, 38);
    EXPECT_EQ(recording.selectionStart, 3U);
    EXPECT_EQ(recording.selectionEnd, 38U);
}

TEST_F(CommandsTest, ACopyForTheClipEditorTakesTheConfirmedName) {
    RecordTake();
    Choose(Command::kCopyToClipEditor);  // cancelled
    EXPECT_EQ(app.clips.Count(), 1);
    app.recording.selectionEnd = 20;
    dialogs.answers = {u"the mayor"};
    Choose(Command::kCopyToClipEditor);
    EXPECT_EQ(dialogs.proposed, u"city00-1");
    EXPECT_EQ(app.clips.Current()->title, u"the mayor");
}

// Each job meets its own first obstacle here: no images, a destination dialog that is cancelled, an
// option that is off.
TEST_F(CommandsTest, EachPublishCommandIsItsOwnJob) {
    struct Case {
        Command command;
        int dialogs;
        bool file;
    };
    RecordTake();
    app.settings.PublishToFile = 1;
    app.settings.FtpServer = u"ftp.radio.invalid";
    app.recording.selectionEnd = 30;
    for (const Case& one :
         {Case{Command::kPublishClip, 1, false}, Case{Command::kPublishClipList, 1, false},
          Case{Command::kImage, 1, false}, Case{Command::kClipToFile, 0, true},
          Case{Command::kClipListToFile, 0, true}, Case{Command::kFastClip, 0, false},
          Case{Command::kFastClipList, 0, false}}) {
        SCOPED_TRACE(int(one.command));
        editor.isOpen = true;
        publishing.shown = 0;
        Choose(one.command);
        EXPECT_FALSE(editor.isOpen);
        EXPECT_EQ(publishing.shown, one.dialogs);
        EXPECT_EQ(std::filesystem::remove(folder.Native(u"pub_city.wav")), one.file);
    }
}

}  // namespace
}  // namespace orma::test
