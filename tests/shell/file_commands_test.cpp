// Files that come from outside of the dialogs: dropped on the window, or current not long ago.

#include "shell/file_commands.h"

#include <gtest/gtest.h>

#include "shell/shell_desk.h"

namespace orma::test {
namespace {

using Texts = std::vector<Text>;

TEST(DroppedFiles, AreOpenedByTheirNamesUnlessSomethingRuns) {
    ShellDesk desk;
    desk.Open();
    desk.RecordTake();
    Application& app = desk.app;
    const Text take = app.recording.audioPath;
    ASSERT_TRUE(app.project.SaveProject());
    desk.dialogs.answers = {desk.folder.Path(u"pier.opr")};
    EXPECT_TRUE(desk.Run(Command::kNewProject));
    ASSERT_EQ(app.clips.Count(), 0);

    desk.editor.isOpen = true;
    desk.shell.OnDrop(take);
    EXPECT_FALSE(desk.editor.isOpen);
    EXPECT_EQ(app.recording.audioPath, take);
    EXPECT_EQ(app.project.Name(), u"pier");
    EXPECT_TRUE(desk.Item(Command::kMark).enabled);
    desk.shell.OnDrop(desk.folder.Path(u"city.opr"));
    EXPECT_EQ(app.project.Name(), u"city");
    EXPECT_EQ(app.clips.Count(), 1);

    for (const char16_t* const name : {u"a.txt", u"opr", u"city.opr.bak", u""})
        EXPECT_FALSE(IsOpenable(desk.folder.Path(name)));
    for (const char16_t* const name : {u"A.OPR", u"a.Wav", u"a.b.mp2"})
        EXPECT_TRUE(IsOpenable(name));
    desk.shell.OnDrop(desk.folder.Path(u"a.txt"));
    EXPECT_EQ(desk.boxes.Texts(), Texts{});

    desk.shell.SelectScreen(ScreenIndex::kProgress);
    desk.shell.OnDrop(desk.folder.Path(u"pier.opr"));
    EXPECT_EQ(app.project.Name(), u"city") << "a job runs";
    desk.shell.SelectScreen(ScreenIndex::kRecorder);
    app.transport.Record(true);
    desk.shell.OnDrop(desk.folder.Path(u"pier.opr"));
    EXPECT_EQ(app.project.Name(), u"city");
    EXPECT_EQ(desk.boxes.Texts(), Texts{u"MenuOpen"});
}

/// The submenu's lines; none without one.
Texts Recent(const ShellDesk& desk) {
    Texts lines;
    for (const MenuItem& item : desk.window.menus.menus.front().items)
        for (const MenuItem& line : item.items)
            lines.push_back(line.text);
    return lines;
}

bool Choose(ShellDesk& desk, std::uint32_t place) {
    return desk.shell.OnCommand(static_cast<std::uint32_t>(Command::kRecentProject) + place);
}

TEST(RecentProjects, AreOpenedFromTheMenuTheLatestFirstAndKept) {
    ShellDesk desk;
    desk.Open();
    EXPECT_EQ(Recent(desk), Texts{});
    desk.RecordTake();
    const Text folder = u"   " + SplitPath(desk.folder.Path(u"x")).folder;
    const Text city = u"city" + folder;
    EXPECT_EQ(Recent(desk), Texts{city}) << "its first take made it a file";
    for (const char16_t* const name : {u"1", u"2", u"3", u"4", u"5", u"6"})
        desk.app.recentProjects.Add(desk.folder.Path(Text(name) + u".opr"));
    desk.dialogs.answers = {desk.folder.Path(u"pier.opr")};
    EXPECT_TRUE(desk.Run(Command::kNewProject));
    desk.RecordTake(u"pier");
    ASSERT_EQ(Recent(desk).size(), 8U);
    EXPECT_EQ(Recent(desk).front(), u"pier" + folder);
    EXPECT_EQ(Recent(desk).back(), city);
    const MenuItem& last = desk.window.menus.menus.front().items.back();
    EXPECT_EQ(last.command, Command::kExit);

    EXPECT_TRUE(Choose(desk, 7));
    EXPECT_EQ(desk.app.project.Name(), u"city");
    EXPECT_EQ(desk.app.clips.Count(), 1);
    EXPECT_EQ(Recent(desk).front(), city);
    EXPECT_FALSE(Choose(desk, 8)) << "no command";

    desk.RecordTake(u"quay");
    ASSERT_EQ(Recent(desk).size(), 8U);
    EXPECT_EQ(Recent(desk).back(), u"2" + folder) << "the oldest one went";

    RecentProjects kept(desk.storage, desk.folder.Path(u"recent.txt"));
    kept.Load();
    EXPECT_EQ(kept.Paths(), desk.app.recentProjects.Paths());
}

TEST(RecentProjects, OneThatIsGoneLeavesTheList) {
    ShellDesk desk;
    const Text gone = desk.folder.Path(u"gone.opr");
    const Text here = desk.folder.Path(u"here.opr");
    WriteFileBytes(desk.folder.Path(u"recent.txt"),
                   AsBytes(ToUtf8(gone + u"\n\n" + here + u"\n" + gone + u"\n")));
    desk.Open();
    EXPECT_EQ(Recent(desk).size(), 2U);
    EXPECT_TRUE(Choose(desk, 0));
    EXPECT_EQ(desk.boxes.Texts(), Texts{u"This project is not there any more:\n" + gone});
    EXPECT_EQ(Recent(desk).size(), 1U);
    RecentProjects kept(desk.storage, desk.folder.Path(u"recent.txt"));
    kept.Load();
    EXPECT_EQ(kept.Paths(), Texts{here});
}

TEST(RecentProjects, AFileThatIsNotOursIsNoList) {
    TempFolder folder;
    PosixStorage storage;
    const Text path = folder.Path(u"recent.txt");
    RecentProjects recent(storage, path);
    recent.Load();
    EXPECT_TRUE(recent.Paths().empty());
    WriteFileBytes(path, AsBytes(std::string(70'000, 'x')));
    recent.Load();
    EXPECT_TRUE(recent.Paths().empty());
    WriteFileBytes(path, AsBytes(std::string("no end")));
    recent.Load();
    EXPECT_EQ(recent.Paths(), Texts{u"no end"});
    recent.Add(u"two\nlines.opr");
    EXPECT_EQ(recent.Paths(), Texts{u"no end"});
}

}  // namespace
}  // namespace orma::test
