#include "shell/window_start.h"

#include <gtest/gtest.h>

#include "shell/shell_desk.h"
#include "support/stalling_ftp.h"

namespace orma::test {
namespace {

struct StartDesk : ShellDesk {
    using ShellDesk::ShellDesk;

    WindowParts parts{app, shell, window, running, held, [this](const WindowLook& seen) {
                          look = seen;
                          log.emplace_back("skin");
                      }};
    WindowLook look;
};

/// Asked while a program that is at its end waits for uploads.
struct LastPatience : Patience {
    [[nodiscard]] bool GoOn() override { return asked(); }
    std::function<bool()> asked = [] { return true; };
};

TEST(WindowStart, GoesInItsOrder) {
    StartDesk desk;
    desk.window.display = {480, 640};
    WriteFileBytes(desk.folder.Path(u"size.txt"), AsBytes("[Size]\nLandscape=2\nBig=1\n"));
    EXPECT_TRUE(StartWindow(desk.parts, {}));
    EXPECT_EQ(desk.log, (Log{"wait", "close setup", "open instance", "create Orma Edit 480x380",
                             "skin", "entered 0", "arrow", "show", "raise"}));
    EXPECT_EQ(desk.look.client, (Size{480, 380}));
    EXPECT_EQ(desk.look.background.normal, 494);
    EXPECT_FALSE(desk.window.menus.menus.empty());
    desk.log.clear();
    desk.running.requests.raise();
    EXPECT_EQ(desk.log, Log{"raise"});
    desk.running.requests.close();
    EXPECT_TRUE(desk.shell.IsQuitting());
    EXPECT_EQ(desk.loop.Run(), 0);
}

TEST(WindowStart, OpensWhatTheCommandLineNamesAndGoesOnWithoutAProjectThatIsMissing) {
    StartDesk desk;
    desk.RecordTake();
    StartDesk next;
    EXPECT_TRUE(StartWindow(next.parts, desk.folder.Path(u"city.opr")));
    EXPECT_EQ(next.app.project.Name(), u"city");
    EXPECT_EQ(next.app.clips.Count(), 1);
    StartDesk recording;
    EXPECT_TRUE(StartWindow(recording.parts, desk.app.recording.audioPath));
    EXPECT_EQ(recording.app.recording.length, desk.app.recording.length);
    EXPECT_EQ(recording.app.project.Folder(), recording.folder.Path());
    EXPECT_EQ(recording.app.clips.Count(), 0);
    StartDesk without;
    const Text missing = desk.folder.Path(u"none.opr");
    EXPECT_TRUE(StartWindow(without.parts, missing));
    EXPECT_EQ(without.app.project.Name(), u"default");
    EXPECT_TRUE(without.shell.IsOpen());
    EXPECT_TRUE(without.boxes.shown.empty()) << "not before there is a window to stand over";
    without.loop.RunPending();
    EXPECT_EQ(without.boxes.Texts(), Texts{u"There is no file\n" + missing});
}

TEST(WindowStart, ASecondInstanceTakesOverOnlyWithAProject) {
    struct Case {
        const char16_t* commandLine;
        bool ends;
        bool starts;
        const char* asked;
    };
    for (const Case& one :
         {Case{u"", true, false, "raise other"}, Case{u" a.opr", true, false, "raise other"},
          Case{u"a.opr", true, true, "close other"}, Case{u"a.opr", false, false, "close other"}}) {
        StartDesk desk;
        desk.running.isOpen = true;
        desk.running.ends = one.ends;
        EXPECT_EQ(StartWindow(desk.parts, one.commandLine), one.starts);
        EXPECT_EQ(desk.log[2], one.asked);
        EXPECT_EQ(desk.log.back(), one.starts ? "raise" : "raise other");
        EXPECT_EQ(desk.shell.IsOpen(), one.starts);
    }
    StartDesk late;
    late.running.isQuicker = true;
    EXPECT_FALSE(StartWindow(late.parts, {}));
    EXPECT_EQ(late.log.back(), "raise other");
}

TEST(WindowEnd, SavesTheProjectThenClosesTheWindowThenSavesWhatTheUserLeft) {
    StartDesk desk;
    ASSERT_TRUE(StartWindow(desk.parts, {}));
    desk.RecordTake();
    desk.app.transport.Record(true);
    desk.app.transport.Play(true);
    desk.Deliver(31);
    desk.editor.isOpen = true;
    desk.shell.OnLeftDown({5, 5});
    desk.log.clear();
    LastPatience patience;
    EXPECT_TRUE(EndWindow(desk.parts, patience));
    // The take that was still recorded is in the list before the screens go.
    EXPECT_EQ(desk.log,
              (Log{"close text", "save city.opr", "save city.opr", "left 0", "gone 0", "gone 1",
                   "gone 2", "gone 4", "gone 5", "destroy", "save OrmaSet.sup", "leave instance"}));
    EXPECT_EQ(desk.app.clips.Count(), 2);
    EXPECT_EQ(desk.app.settings.LastName, u"city");
    EXPECT_TRUE(desk.app.recorder.IsClosed());
    desk.shell.OnLeftUp({5, 5});
    desk.shell.OnKeyDown(Key::kTab);
    desk.shell.OnPaint();
    desk.loop.Advance(100);
    EXPECT_EQ(desk.loop.Run(), 0);
}

TEST(WindowEnd, WaitsForUploadsBehindAllElseAndTellsOfThoseThatItGivesUp) {
    for (const bool arrives : {true, false}) {
        StallingFtp line;
        line.frozen = true;
        StartDesk desk(&line);
        ASSERT_TRUE(StartWindow(desk.parts, {}));
        desk.loop.RunPending();
        desk.app.writerContext.live.account.server = u"studio";
        desk.app.project.SetOptions({.liveFtpAllowed = true, .liveFtpNewProjects = true});
        desk.RecordTake();
        ASSERT_EQ(desk.app.liveUploads->UnderWay(), 1U);
        LastPatience patience;
        patience.asked = [&] {
            EXPECT_EQ(desk.log.back(), "leave instance");
            line.frozen = !arrives;
            return arrives;
        };
        EXPECT_TRUE(EndWindow(desk.parts, patience));
        EXPECT_EQ(desk.app.liveUploads->UnderWay(), 0U);
        EXPECT_EQ(line.server.files.contains(u"city00.mp2"), arrives);
        ASSERT_EQ(desk.boxes.shown.size(), arrives ? 0U : 1U);
        if (!arrives) {
            EXPECT_EQ(desk.boxes.shown[0].text, u"The take is not uploaded:\ncity00.mp2\ngiven up");
        }
    }
}

}  // namespace
}  // namespace orma::test
