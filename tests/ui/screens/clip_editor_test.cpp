#include <filesystem>

#include "ui/screens/clip_editor_w_win.h"
#include "ui/screens/screen_desk.h"

namespace orma::test {
namespace {

/// A list that remembers what it shows. Like a real one it may tell of marks that the screen sets.
class FakeClipList : public ClipListView {
  public:
    void Create(const ClipListLook& wanted, std::function<bool(std::int32_t)> ask) override {
        look = wanted;
        mayEdit = std::move(ask);
        exists = true;
    }
    void Destroy() override { exists = false; }
    void Show(const ClipListContent& wanted) override {
        EXPECT_TRUE(exists);
        shown = wanted;
        Mark(shown.marked);
    }
    void Mark(std::int32_t row) override {
        marked = row;
        if (onMark) onMark();
    }
    [[nodiscard]] std::int32_t MarkedRow() const override { return marked; }
    [[nodiscard]] Text TypedTitle() const override { return typed; }
    [[nodiscard]] std::int32_t DropRow() const override { return drop; }

    /// The rows as text, the marked one between brackets.
    [[nodiscard]] std::string Rows() const {
        std::string all;
        for (std::size_t i = 0; i < shown.rows.size(); ++i) {
            const std::string name = ToUtf8(shown.rows[i][0]);
            all += std::cmp_equal(i, marked) ? "[" + name + "] " : name + " ";
        }
        return all;
    }

    ClipListLook look;
    ClipListContent shown;
    std::function<bool(std::int32_t)> mayEdit;
    std::function<void()> onMark;
    bool exists = false;
    std::int32_t marked = -1;
    Text typed;
    std::int32_t drop = -1;
};

/// The clip editor with three clips, a, b and c, of 40, 60 and 20 periods at twenty a second.
class ClipDesk : public ScreenDesk<ClipEditorWWin>, public ::testing::Test {
  protected:
    ClipDesk() : ScreenDesk({.pages = {496, 497}}) {
        (void)AddTake(u"a", 40, {});
        (void)AddTake(u"b", 60, {{10, 20, 0}}, 100, 1, {5, 45});
        (void)AddTake(u"c", 20, {}, 200, 2);
        EXPECT_TRUE(app.project.SelectClip(0));
        list.onMark = [this] { Tell(ListNotification::kSelected); };
        Show(false);
    }

    void Show(bool detailed) {
        if (screen) screen->Left();
        Make(ClipEditorServices{app.transport, app.project, list,
                                [this] {
                                    if (atDialog) atDialog();
                                    return std::exchange(answer, std::nullopt);
                                }},
             detailed);
    }

    void Tell(ListNotification news) {
        screen->OnListNotification(static_cast<std::uint32_t>(news));
    }
    /// The user clicks a row.
    void Click(std::int32_t row) {
        list.marked = row;
        Tell(ListNotification::kSelected);
    }
    void Type(const Text& title) {
        list.typed = title;
        Tell(ListNotification::kTitleTyped);
    }
    void Push(Element element) {
        const Rect rect = rig.skin.RectOf(element);
        (void)rig.PressAt(*screen, {rect.Right() - 2, rect.y + 2});
        rig.Release();
    }
    void Add(const Text& name) {
        answer = folder.Path(name);
        Push(Element::CInsert);
    }

    FakeClipList list;
    std::optional<Text> answer;
    std::function<void()> atDialog;
};

TEST_F(ClipDesk, EnteringMakesTheListWithLengthsAndTotalAndLeavingTakesItAway) {
    EXPECT_EQ(list.Rows(), "[a] b c length: ");
    EXPECT_EQ(Common(list.look.place, rig.skin.RectOf(Element::CWindow)), list.look.place);
    EXPECT_EQ(list.look.place.h % list.look.rowHeight, 0) << "no row is cut off";
    EXPECT_EQ(list.shown.clips, 3U);
    EXPECT_EQ(list.shown.rows[1][1].substr(0, 6), u" 0:01 ") << "30 periods of b are not cut";
    EXPECT_EQ(list.shown.rows[3][1], u" 0:04s.50");
    EXPECT_EQ(Lit(), "Stop ");
    screen->Left();
    EXPECT_FALSE(list.exists);
    app.project.Clips().RemoveCurrent();
    screen->OnClosed();
    screen->Refresh();
    EXPECT_EQ(list.shown.clips, 3U) << "nothing is shown where there is no list";
    screen->Entered();
    EXPECT_EQ(list.Rows(), "[b] c length: ");
}

TEST_F(ClipDesk, ColumnsAreAsWideAsTheirTextsAndTheDescriptionTakesTheRest) {
    const auto width = [&](const Text& text, const Font& font) {
        return rig.canvas.Measure(text + u"00", font).width;
    };
    EXPECT_EQ(list.shown.columns[0].width, width(u"length:", list.shown.names));
    app.clips.At(2).title = u"a title that is wider than all others";
    screen->Refresh();
    EXPECT_EQ(list.shown.columns[0].width, width(app.clips.At(2).title, list.shown.names));
    EXPECT_LE(list.shown.columns[1].width, list.look.place.w / 3);

    Show(true);
    ASSERT_EQ(list.shown.rows[1].size(), 4U);
    EXPECT_EQ(list.shown.rows[1][3], folder.Path(u"b"));
    EXPECT_EQ(list.shown.columns[1].width, width(u" 0:01", list.shown.texts));
}

TEST_F(ClipDesk, LettersAreSmallerWhereTheYearWouldNotBeSeenElse) {
    // The list has 205 pixels, of which the inset takes 5. A letter is half as wide as high, cut
    // off: a name of n letters and a description of 22 take (n + 2) * 6 + 22 * 5 pixels at first.
    const auto heights = [&](std::size_t letters) {
        app.clips.At(2).title = Text(letters, u'n');
        screen->Refresh();
        return std::pair{list.shown.names.height, list.shown.texts.height};
    };
    EXPECT_EQ(heights(13), (std::pair{12, 11}));
    EXPECT_EQ(heights(14), (std::pair{11, 10}));
    EXPECT_EQ(heights(17), (std::pair{11, 9}));
    EXPECT_EQ(heights(20), (std::pair{11, 9}));
    EXPECT_EQ(heights(21), (std::pair{12, 11})) << "they would not help";
}

TEST_F(ClipDesk, AMarkedRowBecomesTheCurrentClipAndTheTotalNever) {
    Click(1);
    EXPECT_EQ(app.recording.name, u"b");
    EXPECT_EQ(app.recording.selectionStart, 5U);
    EXPECT_EQ(app.recording.selectionEnd, 45U);
    Click(3);
    EXPECT_EQ(app.clips.CurrentIndex(), 1);
    screen->Remove();
    screen->MoveUp();
    EXPECT_FALSE(list.mayEdit(3));
    EXPECT_EQ(app.clips.Count(), 3);
    EXPECT_EQ(list.Rows(), "a b c [length:] ");
}

TEST_F(ClipDesk, AClipWhoseRecordingIsGoneIsTheOneThatIsRemoved) {
    std::filesystem::remove(ToUtf8(folder.Path(u"b.wav")));
    Push(Element::CRotText);
    EXPECT_EQ(list.shown.rows[3][1], u" 0:03s.00") << "read anew";
    Click(1);
    EXPECT_EQ(app.clips.CurrentIndex(), 1);
    EXPECT_EQ(app.recording.length, 0U) << "nothing of the clip before";
    screen->OnKey(Key::kDelete);
    EXPECT_EQ(list.Rows(), "a [c] length: ");

    for (int i = 0; i < 3; ++i)
        screen->Remove();
    EXPECT_EQ(list.Rows(), "length: ");
    EXPECT_TRUE(app.recording.sheet.levels.empty());
    screen->OnKey(Key::kSpace);
    EXPECT_EQ(Lamp(), 0) << "there is nothing to play";
}

TEST_F(ClipDesk, ButtonsKeysAndDraggingChangeTheListAndItsFile) {
    EXPECT_EQ(list.Rows(), "[a] b c length: ");
    Push(Element::CUp);
    EXPECT_EQ(list.Rows(), "[a] b c length: ") << "it is the first one";
    Push(Element::CDown);
    EXPECT_EQ(list.Rows(), "b [a] c length: ");
    Tell(ListNotification::kMoveDown);
    EXPECT_EQ(list.Rows(), "b c [a] length: ");
    Push(Element::CDown);
    EXPECT_EQ(list.Rows(), "b c [a] length: ") << "it is the last one";
    Tell(ListNotification::kMoveUp);
    EXPECT_EQ(list.Rows(), "b [a] c length: ");
    list.drop = 0;
    Tell(ListNotification::kDragged);
    EXPECT_EQ(list.Rows(), "[a] b c length: ");
    Type(u"Mayor");
    EXPECT_EQ(list.Rows(), "[Mayor] b c length: ");
    Type({});
    EXPECT_EQ(list.Rows(), "[a] b c length: ");
    Add(u"c.wav");
    EXPECT_EQ(list.Rows(), "[c] a b c length: ") << "in front of the current one";
    Click(4);
    answer = folder.Path(u"b.wav");
    screen->OnKey(Key::kInsert);
    EXPECT_EQ(list.Rows(), "c a b c [b] length: ") << "behind all: the total was marked";
    Click(5);
    Add(u"none.wav");
    EXPECT_EQ(list.Rows(), "c a b c [b] length: ") << "it cannot be read";
    Push(Element::CInsert);
    EXPECT_EQ(list.Rows(), "c a b c [b] length: ") << "nothing was chosen";
    Push(Element::CRemove);
    EXPECT_EQ(list.Rows(), "c a b [c] length: ");

    EXPECT_TRUE(app.project.LoadProject());
    screen->Refresh();
    EXPECT_EQ(list.Rows(), "c a b [c] length: ") << "as the file holds it";
}

TEST_F(ClipDesk, TheListPlaysFromTheCurrentClipToItsEndOnTheWidestChannelsOrOneAlone) {
    Click(1);
    Push(Element::CPlay);
    EXPECT_EQ(Lit(), "Play ");
    EXPECT_EQ(waves.out.format.channels, 2U);
    Hear(20);
    EXPECT_EQ(list.Rows(), "a [b] c length: ");
    Hear(20);
    EXPECT_EQ(list.Rows(), "a b [c] length: ");
    EXPECT_EQ(app.recording.name, u"c");
    Hear(100);
    EXPECT_EQ(Lit(), "Stop ");
    EXPECT_EQ(waves.out.played.size(), 50U * 2 * kPeriodBytes) << "30 of b, 20 of c";

    Click(0);
    waves.out.played.clear();
    Tell(ListNotification::kPlayAlone);
    Hear(100);
    EXPECT_EQ(Lamp(), 0);
    EXPECT_EQ(Heard().size(), 40U);
    EXPECT_EQ(list.Rows(), "[a] b c length: ");
}

TEST_F(ClipDesk, WhilePlayingTheListIsNotEditedButMovesAndAnotherRowStops) {
    screen->OnKey(Key::k8);
    Hear(5);
    EXPECT_FALSE(list.mayEdit(0));
    Type(u"late");
    answer = folder.Path(u"c.wav");
    screen->Insert();
    screen->Remove();
    EXPECT_EQ(list.Rows(), "[a] b c length: ");
    EXPECT_TRUE(answer) << "no dialog while something plays";
    Push(Element::CDown);
    EXPECT_EQ(list.Rows(), "b [a] c length: ");
    Hear(40);
    EXPECT_EQ(list.Rows(), "b a [c] length: ") << "what follows now, not the clip that was heard";
    Click(0);
    EXPECT_EQ(Lamp(), 0);
    EXPECT_EQ(app.recording.name, u"b");
    screen->OnKey(Key::kEnter);
    EXPECT_EQ(Lamp(), 3);
    screen->OnKey(Key::kSpace);
    EXPECT_EQ(Lamp(), 0);
    screen->OnKey(Key::k8);
    screen->Left();
    EXPECT_EQ(Lamp(), 0);
}

TEST_F(ClipDesk, DuringATakeTheListIsOnlyLookedAtAndThenShowsItsClip) {
    Press("RP");
    Speak(30);
    const Text take = app.recording.name;
    Click(1);
    EXPECT_EQ(list.Rows(), "a b c length: ") << "no clip is current";
    screen->Remove();
    screen->MoveDown();
    screen->OnKey(Key::k8);
    screen->OnKey(Key::k7);
    Type(u"late");
    EXPECT_FALSE(list.mayEdit(0));
    EXPECT_EQ(Lamp(), 2);
    EXPECT_EQ(app.recording.name, take);
    EXPECT_EQ(Lit(), "") << "neither playing nor stopped";
    Press('S');
    loop.RunPending();
    EXPECT_EQ(list.Rows(), "a b c [" + ToUtf8(take) + "] length: ");

    atDialog = [this] { Press('R'); };  // a key of the device
    answer = folder.Path(u"c.wav");
    screen->Insert();
    EXPECT_EQ(app.clips.Count(), 4);
}

}  // namespace
}  // namespace orma::test
