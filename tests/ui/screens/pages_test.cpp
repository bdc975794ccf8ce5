#include "ui/screens/about_w_win.h"
#include "ui/screens/progress_w_win.h"
#include "ui/screens/screen_desk.h"

namespace orma::test {
namespace {

/// What stands on a screen, line by line as it is drawn.
std::vector<Text> Drawn(ScreenRig& rig, WWin& screen) {
    rig.ink.Forget();
    screen.Paint();
    return rig.ink.texts;
}

TEST(AboutWWinTest, AsksAnewNowAndThenAndLeavesOutWhatIsNotKnown) {
    ScreenRig rig({.pages = {498, 499}});
    FakeHost host;
    AboutInfo info{.freeMemory = 123456 * 1024ULL,
                   .processorLoad = 7,
                   .battery = 83,
                   .projectLocation = u"/media/card/2026/november/mayor and harbour/"};
    AboutWWin screen(rig.scene, host, {3, 1, 4}, [&] { return info; });
    screen.Entered();
    EXPECT_EQ(Drawn(rig, screen).size(), 8U);
    rig.TakeChanges();
    for (int i = 0; i < 200; ++i)
        screen.Tick();
    EXPECT_TRUE(rig.TakeChanges().empty()) << "nothing changes";
    info.freeMemory = 98765432 * 1024ULL;
    info.memoryIsShort = true;
    info.processorLoad = info.battery = std::nullopt;
    for (int i = 0; i < 50; ++i)
        screen.Tick();
    EXPECT_FALSE(rig.TakeChanges().empty());
    const std::vector<Text> device = {u"Orma Edit", u"Main memory", u"98765432*",
                                      u"Orma Edit V3.1R4 (c) 2003-2006"};
    EXPECT_EQ(Drawn(rig, screen), device);
    screen.OnKey(Key::kRight);
    EXPECT_EQ(Drawn(rig, screen)[1], u"At: ...2026/november/mayor and harbour/") << "the end of it";
    screen.OnKey(Key::kLeft);
    EXPECT_EQ(Drawn(rig, screen), device);
}

/// The progress screen, with a reporter who may press the left button while a job asks.
struct ProgressDesk {
    ScreenRig rig{{.pages = {492, 493}}};
    FakeHost host;
    FakeClock clock;
    int slices = 0;
    std::function<void()> pointer;
    ProgressWWin screen{rig.scene, host, clock, [this] {
                            ++slices;
                            if (pointer) pointer();
                        }};

    ProgressDesk() {
        screen.Entered();
        screen.Paint();
        rig.TakeChanges();
    }

    /// The job goes on for that long and asks whether it is cancelled.
    [[nodiscard]] bool After(std::uint32_t milliseconds) {
        clock.ticks += milliseconds;
        return screen.IsCancelled();
    }

    [[nodiscard]] Text Bar() const { return screen.Controls()[1]->Value(); }
};

TEST(ProgressWWinTest, TextsBarAndBytesAreShownWhileTheJobRuns) {
    ProgressDesk desk;
    desk.screen.SetText(u"  Publishing audio...  ");
    desk.screen.SetRange(5);
    desk.screen.Step(1);
    EXPECT_FALSE(desk.After(0));
    EXPECT_EQ(desk.Bar(), u"20%");
    desk.screen.Step(7);
    desk.screen.SetBytes(900'001, 12'340'000);
    EXPECT_FALSE(desk.After(ProgressWWin::kFrameMs));
    EXPECT_EQ(desk.Bar(), u"100%") << "never beyond its end";
    EXPECT_EQ(desk.rig.ink.texts,
              (std::vector<Text>{u"  Publishing audio...  ", u"901 KB of 12.3 MB"}));
    desk.screen.SetRange(3);
    EXPECT_FALSE(desk.After(0));
    EXPECT_EQ(desk.Bar(), u"0%") << "the next part of the job";

    desk.screen.Left();
    desk.screen.Entered();
    EXPECT_EQ(Drawn(desk.rig, desk.screen), std::vector<Text>{}) << "the next job starts anew";
}

TEST(ProgressWWinTest, AJobThatAsksAllTheTimeIsShownAFrameNowAndThen) {
    ProgressDesk desk;
    desk.screen.SetRange(1000);
    for (int i = 0; i < 1000; ++i) {  // two seconds
        desk.screen.Step(1);
        desk.screen.SetBytes(static_cast<std::uint64_t>(i) * 1000, 1'000'000);
        EXPECT_FALSE(desk.After(2));
    }
    EXPECT_EQ(desk.slices, 2000 / static_cast<int>(ProgressWWin::kFrameMs));
    EXPECT_LE(desk.rig.TakeChanges().size(), 4U * 41U) << "bar and line";
    desk.screen.SetText(u"  Publishing text...  ");
    EXPECT_FALSE(desk.After(0));
    EXPECT_EQ(desk.slices, 41) << "what comes next is shown at once";
}

TEST(ProgressWWinTest, TheTimeThatIsLeftIsToldOnceItIsKnownAndDoesNotJump) {
    ProgressDesk desk;
    constexpr std::uint64_t kTotal = 10'000'000;
    std::uint64_t done = 300'000;  // taken at once by the system
    std::vector<Text> seen;
    const auto send = [&](int times, std::uint64_t bytes) {
        for (int i = 0; i < times; ++i) {
            done += bytes;
            desk.screen.SetBytes(done, kTotal);
            EXPECT_FALSE(desk.After(100));
            const Text line = desk.screen.Controls().back()->Value();
            const std::size_t comma = line.find(u", ");
            const Text left = comma == Text::npos ? Text() : line.substr(comma + 2);
            if (seen.empty() || seen.back() != left) seen.push_back(left);
        }
    };
    send(25, 20'000);
    EXPECT_EQ(seen, std::vector<Text>{Text()}) << "too early to tell";
    for (int i = 0; i < 150; ++i)  // the network takes it in gulps
        send(1, i % 5 == 0 ? 100'000 : 0);
    EXPECT_LE(seen.size(), 16U) << "a second each";
    EXPECT_GE(seen.back(), u"0:29 left");
    EXPECT_LE(seen.back(), u"0:33 left");
    send(100, 0);
    EXPECT_GT(seen.back(), u"1:30 left") << "it stands still";
    done = kTotal;
    send(1, 0);
    EXPECT_EQ(seen.back(), Text());
}

TEST(ProgressWWinTest, CancelIsPressedFromWithinTheJob) {
    ProgressDesk desk;
    EXPECT_FALSE(desk.screen.IsCancelled());
    desk.screen.SetText(u"  Connecting...  ");
    const Rect button = desk.rig.skin.RectOf(Element::ProgressCancel);
    desk.pointer = [&] {
        desk.rig.PressAt(desk.screen, {button.x + 2, button.y + 2});
        EXPECT_TRUE(desk.rig.IsLitExactly(button));
        desk.rig.Release();
        EXPECT_TRUE(desk.rig.IsDark(button.x, button.y));
    };
    EXPECT_TRUE(desk.screen.IsCancelled());
    desk.pointer = nullptr;
    desk.screen.SetText(u"  Publishing audio...  ");
    EXPECT_TRUE(desk.screen.IsCancelled());
    EXPECT_EQ(Drawn(desk.rig, desk.screen), (std::vector<Text>{u"  Cancelling...  "}));
    EXPECT_TRUE(desk.screen.IsCancelled());
    EXPECT_EQ(desk.host.announced, (std::vector<Text>{u"Cancelling"}));

    desk.screen.Left();
    desk.screen.Entered();
    EXPECT_FALSE(desk.screen.IsCancelled());
}

}  // namespace
}  // namespace orma::test
