// Files that come from outside of the dialogs: dropped on the window, or current not long ago.

#include "shell/file_commands.h"

#include <gtest/gtest.h>

#include "shell/shell_desk.h"

namespace orma::test {
namespace {

struct FileCommandsTest : ShellTest {
    /// The submenu's lines; none without one.
    Texts Recent() {
        Texts lines;
        for (const MenuItem& item : window.menus.menus.front().items)
            for (const MenuItem& line : item.items)
                lines.push_back(line.text);
        return lines;
    }

    bool OpenRecent(std::uint32_t place) {
        return shell.OnCommand(static_cast<std::uint32_t>(Command::kRecentProject) + place);
    }

    void ExpectKept(const Texts& paths) {
        RecentProjects kept(storage, folder.Path(u"recent.txt"));
        kept.Load();
        EXPECT_EQ(kept.Paths(), paths);
    }
};

TEST_F(FileCommandsTest, DroppedFilesAreOpenedByTheirNamesUnlessSomethingRuns) {
    RecordTake();
    const Text take = app.recording.audioPath;
    dialogs.answers = {folder.Path(u"pier.opr")};
    Choose(Command::kNewProject);
    ASSERT_EQ(app.clips.Count(), 0);

    editor.isOpen = true;
    shell.OnDrop(take);
    EXPECT_FALSE(editor.isOpen);
    EXPECT_EQ(app.recording.audioPath, take);
    EXPECT_EQ(app.project.Name(), u"pier");
    EXPECT_TRUE(Item(Command::kMark).enabled);
    shell.OnDrop(folder.Path(u"city.opr"));
    EXPECT_EQ(app.project.Name(), u"city");
    EXPECT_EQ(app.clips.Count(), 1);

    for (const char16_t* const name : {u"a.txt", u"opr", u"city.opr.bak", u""})
        EXPECT_FALSE(IsOpenable(folder.Path(name)));
    for (const char16_t* const name : {u"A.OPR", u"a.Wav", u"a.b.mp2"})
        EXPECT_TRUE(IsOpenable(name));
    shell.OnDrop(folder.Path(u"a.txt"));
    shell.SelectScreen(ScreenIndex::kProgress);
    shell.OnDrop(folder.Path(u"pier.opr"));
    EXPECT_EQ(app.project.Name(), u"city") << "a job runs";
    EXPECT_EQ(boxes.Texts(), Texts{});
    shell.SelectScreen(ScreenIndex::kRecorder);
    app.transport.Record(true);
    shell.OnDrop(folder.Path(u"pier.opr"));
    EXPECT_EQ(app.project.Name(), u"city");
    EXPECT_EQ(boxes.Texts(), Texts{u"MenuOpen"});
}

TEST_F(FileCommandsTest, RecentProjectsAreOpenedFromTheMenuTheLatestFirstAndKept) {
    EXPECT_EQ(Recent(), Texts{});
    RecordTake();
    const Text where = u"   " + SplitPath(folder.Path(u"x")).folder;
    EXPECT_EQ(Recent(), Texts{u"city" + where}) << "its first take made it a file";
    for (const char16_t* const name : {u"1", u"2", u"3", u"4", u"5", u"6"})
        app.recentProjects.Add(folder.Path(Text(name) + u".opr"));
    RecordTake(u"pier");
    ASSERT_EQ(Recent().size(), 8U);
    EXPECT_EQ(Recent().front(), u"pier" + where);
    EXPECT_EQ(Recent().back(), u"city" + where);
    EXPECT_EQ(window.menus.menus.front().items.back().command, Command::kExit);

    EXPECT_TRUE(OpenRecent(7));
    EXPECT_EQ(app.project.Name(), u"city");
    EXPECT_EQ(app.clips.Count(), 1);
    EXPECT_EQ(Recent().front(), u"city" + where);
    EXPECT_FALSE(OpenRecent(8)) << "no command";

    RecordTake(u"quay");
    ASSERT_EQ(Recent().size(), 8U);
    EXPECT_EQ(Recent().back(), u"2" + where) << "the oldest one went";
    ExpectKept(app.recentProjects.Paths());
}

TEST_F(FileCommandsTest, ARecentProjectThatIsGoneLeavesTheList) {
    const Text gone = folder.Path(u"gone.opr");
    const Text here = folder.Path(u"here.opr");
    WriteFileBytes(folder.Path(u"recent.txt"),
                   AsBytes(ToUtf8(gone + u"\n\n" + here + u"\n" + gone + u"\n")));
    Open();
    EXPECT_EQ(Recent().size(), 2U);
    EXPECT_TRUE(OpenRecent(0));
    EXPECT_EQ(boxes.Texts(), Texts{u"This project is not there any more:\n" + gone});
    EXPECT_EQ(Recent().size(), 1U);
    ExpectKept({here});
}

TEST_F(FileCommandsTest, AFileThatIsNotOursIsNoListOfProjects) {
    RecentProjects recent(storage, folder.Path(u"recent.txt"));
    const std::pair<std::string, Texts> files[] = {{std::string(70'000, 'x'), {}},
                                                   {"no end", {u"no end"}}};
    for (const auto& [file, paths] : files) {
        WriteFileBytes(folder.Path(u"recent.txt"), AsBytes(file));
        recent.Load();
        EXPECT_EQ(recent.Paths(), paths);
    }
    recent.Add(u"two\nlines.opr");
    EXPECT_EQ(recent.Paths(), Texts{u"no end"});
}

}  // namespace
}  // namespace orma::test
