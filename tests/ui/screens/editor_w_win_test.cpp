#include "ui/screens/editor_w_win.h"

#include "ui/screens/screen_desk.h"

namespace orma::test {
namespace {

/// The editor with a take of 400 periods and a cut.
class EditorDesk : public ScreenDesk<EditorWWin>, public ::testing::Test {
  protected:
    EditorDesk() {
        (void)AddTake(u"talk00", 400, {{100, 120, 0}}, 0, 1, {20, 390});
        EXPECT_TRUE(app.project.SelectClip(0));
        Make(EditorScreenServices{app.transport, app.recorder, app.project, app.recording,
                                  app.audio, outside},
             false);
    }

    void Go(std::int32_t position) { transport.MoveTo(position); }

    /// What stands on the image is what painting everything anew shows.
    void ExpectTrueImage() {
        const std::vector<Pixel> shown = rig.image.pixels;
        screen->Paint();
        EXPECT_TRUE(shown == rig.image.pixels);
    }

    ExternalRecorderControl outside{nullptr, app.report};
};

TEST_F(EditorDesk, PressesMovesAndPlayingLeaveTheImageTrue) {
    rig.PressAt(*screen, {44 + 50, 60});
    EXPECT_EQ(Cursor(), 50U);
    EXPECT_EQ(ValueOf(u"Time"), "  0m:02s.50");
    EXPECT_EQ(ValueOf(u"Length"), "  0m:20s.00");
    ExpectTrueImage();
    Go(150);
    Press('P');
    Hear(40);
    EXPECT_GT(Cursor(), 164U) << "the view has paged";
    ExpectTrueImage();
    Press('S');
    ExpectTrueImage();
    Go(200);
    Go(400);
    EXPECT_EQ(Cursor(), 400U);
    ExpectTrueImage();
}

TEST_F(EditorDesk, AnEdgeUnderTheCursorMoves) {
    Go(120);  // the cut's end: it becomes the current one
    EXPECT_EQ(app.recording.currentCut, 0);
    screen->OnKey(Key::k5);
    EXPECT_EQ(app.recording.sheet.cuts[0].end, 121U);
    EXPECT_EQ(Cursor(), 121U);
    ExpectTrueImage();
    Go(200);
    ExpectTrueImage();
}

TEST_F(EditorDesk, TheCutButtonsTellWhereTheCursorStands) {
    const auto look = [this](Element button, int on) {
        const Rect at = rig.skin.RectOf(button);
        const int x = at.x + at.w / 2;
        const int y = at.y + at.h / 2;
        return rig.Shows(x, y, on) ? "on " : rig.Shows(x, y, on + 1) ? "half " : "off ";
    };
    const auto looks = [&] {
        return std::string(look(Element::EditRewind, 515)) + look(Element::EditFastForward, 517);
    };
    const std::pair<std::int32_t, const char*> places[] = {
        {20, "on on "},  {390, "on on "},     {50, "off off "},  {100, "on on "},
        {120, "on on "}, {110, "half half "}, {99, "off half "}, {121, "half off "}};
    for (const auto& [place, shown] : places) {
        Go(place);
        EXPECT_EQ(looks(), shown) << place;
    }
    Go(20);
    Press('P');
    EXPECT_EQ(Cursor(), 20U);
    EXPECT_EQ(looks(), "off off ") << "while it plays a selection's edge does not move";
}

TEST_F(EditorDesk, ASelectionHasAColourWhileItsEdgeIsToBeMoved) {
    const auto isColoured = [&] {
        ExpectTrueImage();
        return !rig.ShowsExactly({}, PixelOf(rig.skin.Colours().waveformEditCut));
    };
    EXPECT_FALSE(isColoured());
    Go(20);
    EXPECT_TRUE(isColoured());
    screen->OnKey(Key::k5);
    EXPECT_EQ(app.recording.selectionStart, 21U);
    EXPECT_TRUE(isColoured());
    Go(22);
    EXPECT_FALSE(isColoured());
    app.recording.selectionStart = 0;
    app.recording.selectionEnd = 400;
    screen->Refresh();
    Go(0);
    EXPECT_FALSE(isColoured()) << "all of it is no part";
}

TEST_F(EditorDesk, WhoDragsTheViewHasItToHimselfWhileItPlays) {
    Go(50);
    Press('P');
    Hear(8);
    const std::uint32_t position = Cursor();
    const Rect bar = rig.skin.RectOf(Element::EditScrollGraph);
    rig.PressAt(*screen, {bar.x + 30, bar.y + 2});
    EXPECT_EQ(transport.State(), TransportState::kDragging);
    rig.DragTo({bar.x + 60, bar.y + 2});
    const Picture dragged = rig.image;
    const Rect graph = rig.skin.RectOf(Element::EditRecGraph);
    EXPECT_GT(Cursor(), position + 60);
    Hear(8);
    for (int x = graph.x; x < graph.Right(); ++x)
        ASSERT_EQ(rig.image.At(x, 60), dragged.At(x, 60)) << "the graph stays under the pointer";
    rig.Release();
    EXPECT_EQ(transport.State(), TransportState::kPlaying);
    Hear(8);
    ExpectTrueImage();

    rig.PressAt(*screen, {bar.x + 75, bar.y + 2});
    EXPECT_EQ(transport.State(), TransportState::kDragging);
    screen->Left();
    EXPECT_EQ(transport.State(), TransportState::kPlaying) << "nobody lets it go any more";
}

TEST_F(EditorDesk, TheBarBesideTheGraphMarksDeletesTheCurrentCutAndTakesItBack) {
    const auto enabled = [this] {
        ExpectTrueImage();
        std::string names;
        for (const char16_t* const name : {u"Undo", u"Mark", u"Delete cut"})
            if (Find(name)->IsEnabled()) names += ToUtf8(name) + " ";
        return names;
    };
    EXPECT_EQ(enabled(), "Mark ");
    Go(30);
    rig.PressAt(*screen, {216, 60});
    EXPECT_EQ(app.recording.sheet.marks, std::vector<std::uint32_t>{30});
    rig.PressAt(*screen, {216, 90});
    EXPECT_EQ(app.recording.sheet.cuts.size(), 1U) << "no cut is current";
    Go(100);
    EXPECT_EQ(enabled(), "Mark Delete cut ");
    rig.PressAt(*screen, {216, 90});
    EXPECT_TRUE(app.recording.sheet.cuts.empty());
    EXPECT_EQ(enabled(), "Undo Mark ");
    rig.PressAt(*screen, {216, 30});
    EXPECT_EQ(app.recording.sheet.cuts.size(), 1U);
    EXPECT_TRUE(Find(u"Undo")->IsEnabled()) << "it can be done again";
    rig.PressAt(*screen, {216, 30});
    EXPECT_TRUE(app.recording.sheet.cuts.empty()) << "undone, the deletion is done again";
    Press("RP");
    Speak(50);
    EXPECT_EQ(enabled(), "") << "a take is not edited";
}

TEST_F(EditorDesk, KeysMoveTheCursorByColumnsViewsAndToTheSelectionsEnds) {
    struct Step {
        Key key;
        std::uint32_t cursor;
    };
    for (const Step& step : {Step{Key::kRight, 1},
                             {Key::kPageDown, 165},
                             {Key::kLeft, 164},
                             {Key::kPageUp, 0},
                             {Key::kEnd, 390},
                             {Key::kHome, 20},
                             {Key::kDown, 20},
                             {Key::kRight, 22},
                             {Key::kUp, 22}}) {
        screen->OnKey(step.key);
        EXPECT_EQ(Cursor(), step.cursor) << static_cast<int>(step.key);
    }
    ExpectTrueImage();
}

TEST_F(EditorDesk, EveryListedKeyDoesSomething) {
    for (const KeyAction& action : screen->Keys()) {
        Press('S');
        loop.RunPending();
        Go(110);
        Go(120);  // the cut is current
        screen->Paint();
        const std::vector<Pixel> before = rig.image.pixels;
        screen->OnKey(action.key);
        EXPECT_TRUE(Cursor() != 120 || rig.image.pixels != before) << ToUtf8(action.does);
    }
    ExpectKeysAndTooltipsAgree();
}

TEST_F(EditorDesk, ATakeGrowsInTheGraphAndIsNotEditedMeanwhile) {
    Press("RP");
    Speak(200);
    EXPECT_EQ(Lamp(), 2);
    EXPECT_EQ(ValueOf(u"Time"), ValueOf(u"Length"));
    ExpectTrueImage();
    const std::size_t marks = app.recording.sheet.marks.size();
    for (const Key key : {Key::kInsert, Key::kDelete, Key::kBackspace, Key::kRight, Key::kPageUp})
        screen->OnKey(key);
    EXPECT_EQ(app.recording.sheet.marks.size(), marks);
    screen->OnKey(Key::k9);
    EXPECT_EQ(app.recording.sheet.marks.size(), marks + 1);
    ExpectTrueImage();
    Press('S');  // the device still holds the last of it
    ASSERT_FALSE(app.recorder.IsClosed());
    app.recording.length = 200;
    screen->OnKey(Key::kInsert);
    EXPECT_EQ(app.recording.sheet.marks.size(), marks + 1);
    loop.RunPending();
    EXPECT_TRUE(app.recorder.IsClosed());
    ExpectTrueImage();
}

TEST_F(EditorDesk, BehindAnotherScreenItDrawsNothingAndIsTrueWhenItComesBack) {
    Go(300);
    screen->Left();
    rig.TakeChanges();
    rig.ink.Forget();
    Go(10);
    Press('P');
    Hear(5);
    Press('S');
    EXPECT_TRUE(rig.TakeChanges().empty());
    EXPECT_TRUE(rig.ink.lines.empty());
    EXPECT_TRUE(rig.ink.texts.empty());
    screen->Entered();
    ExpectTrueImage();
}

}  // namespace
}  // namespace orma::test
