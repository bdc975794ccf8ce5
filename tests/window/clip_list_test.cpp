// The list of the clip editor as a widget, used with pointer and keys on a display in memory.

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMenu>
#include <QMouseEvent>
#include <QScrollBar>
#include <array>
#include <string>

#include <gtest/gtest.h>

#include "base/text.h"
#include "window/clip_tree.h"
#include "window/qt_clip_list.h"
#include "window/qt_ink.h"

namespace orma {
namespace {

constexpr int kRow = 20;
constexpr Rect kPlace{10, 10, 200, 110};  // five and a half rows
constexpr Colour kGround{23, 22, 20};
constexpr Colour kText{255, 244, 220};
constexpr Colour kSignal{255, 111, 15};

ClipListContent Content(std::vector<Text> names, std::int32_t marked) {
    ClipListContent content;
    content.columns = {{u"Name", 80, false}, {u"Description", 40, true}};
    content.names = {.height = 12, .weight = FontWeight::kSemiBold};
    content.texts = {.height = 11};
    content.clips = names.size();
    for (Text& name : names)
        content.rows.push_back({std::move(name), u" 0:42"});
    content.rows.push_back({u"length:", u" 6:40s.00"});
    content.marked = marked;
    return content;
}

class ClipTreeTest : public ::testing::Test {
  protected:
    ClipTreeTest() {
        tree_.Show(Content({u"a", u"b", u"c"}, 1));
        page_.setFixedSize(240, 160);
        page_.show();
        page_.activateWindow();
        QCoreApplication::processEvents();
    }

    void Mouse(QEvent::Type type, QPoint at) {
        const bool up = type == QEvent::MouseButtonRelease;
        QMouseEvent event(type, at, tree_.viewport()->mapToGlobal(at),
                          type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton,
                          up ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(tree_.viewport(), &event);
    }
    static QPoint InRow(int row) { return {150, row * kRow + kRow / 2}; }

    /// Whether the widget used the key.
    bool Key(int key, Qt::KeyboardModifiers held = Qt::NoModifier, QWidget* to = nullptr) {
        QKeyEvent event(QEvent::KeyPress, key, held);
        QCoreApplication::sendEvent(to != nullptr ? to : &tree_, &event);
        return event.isAccepted();
    }
    [[nodiscard]] QLineEdit* Editor() {
        for (auto* const editor : tree_.findChildren<QLineEdit*>())
            if (editor->isVisible()) return editor;
        return nullptr;
    }
    void Type(const char* title) {
        Key(Qt::Key_F2);
        Editor()->setText(title);
    }
    [[nodiscard]] std::string Told() { return std::exchange(told_, {}); }
    [[nodiscard]] QColor At(int x, int y) { return tree_.grab().toImage().pixelColor(x, y); }

    static QColor Shade(Colour colour) { return {colour.red, colour.green, colour.blue}; }

    QtInk ink_;
    bool editable_ = true;
    std::string told_;
    QWidget page_;
    ClipTree tree_{
        page_, ink_,
        ClipListLook{
            .place = kPlace,
            .colours = {.textBackground = kGround, .text = kText, .waveformEditCut = kSignal},
            .rowHeight = kRow,
            .inset = 5},
        [this](std::int32_t) { return editable_; },
        [this](ListNotification news) {
            told_ += Format("%d:%d ", static_cast<int>(news), static_cast<int>(tree_.MarkedRow()));
        }};
};

TEST_F(ClipTreeTest, OnlyTheUserIsNewsAndTheWholeRowIsMarked) {
    EXPECT_EQ(At(199, kRow + 2), Shade(kText));
    EXPECT_EQ(Told(), "");
    Mouse(QEvent::MouseButtonPress, InRow(2));
    Mouse(QEvent::MouseButtonRelease, InRow(2));
    EXPECT_EQ(Told(), "1:2 ");
    EXPECT_EQ(At(199, 2 * kRow + 2), Shade(kText));
    EXPECT_EQ(At(199, kRow + 2), Shade(kGround));
}

TEST_F(ClipTreeTest, MoreRowsThanThereIsRoomForTakeAScrollBarAndTheMarkStaysInView) {
    tree_.Show(Content({u"a", u"b", u"c", u"d", u"e", u"f", u"g"}, 6));
    QCoreApplication::processEvents();
    EXPECT_TRUE(tree_.verticalScrollBar()->isVisible());
    EXPECT_EQ(tree_.columnWidth(0) + tree_.columnWidth(1), tree_.viewport()->width());
    EXPECT_TRUE(tree_.viewport()->rect().contains(tree_.visualItemRect(tree_.topLevelItem(6))));
    tree_.Show(Content({}, -1));
    EXPECT_EQ(tree_.MarkedRow(), -1);
    EXPECT_EQ(tree_.topLevelItemCount(), 1);
    EXPECT_EQ(Told(), "");
}

TEST_F(ClipTreeTest, KeysOfAListAreItsOwnAndAllOthersThePages) {
    struct Step {
        int key;
        Qt::KeyboardModifiers held;
        bool used;
        const char* told;
    };
    const Step steps[] = {
        {Qt::Key_Down, Qt::NoModifier, true, "1:2 "},
        {Qt::Key_Home, Qt::NoModifier, true, "1:0 "},
        {Qt::Key_End, Qt::NoModifier, true, "1:3 "},
        {Qt::Key_Up, Qt::NoModifier, true, "1:2 "},
        {Qt::Key_Up, Qt::ControlModifier, true, "4:2 "},
        {Qt::Key_Down, Qt::AltModifier, true, "5:2 "},
        {Qt::Key_Return, Qt::ShiftModifier, true, "2:2 "},
        {Qt::Key_Return, Qt::NoModifier, false, ""},
        {Qt::Key_Space, Qt::NoModifier, false, ""},
        {Qt::Key_Delete, Qt::NoModifier, false, ""},
        {Qt::Key_Tab, Qt::NoModifier, false, ""},
        {Qt::Key_Q, Qt::ControlModifier, false, ""},
    };
    for (const Step& step : steps) {
        EXPECT_EQ(Key(step.key, step.held), step.used) << step.key;
        EXPECT_EQ(Told(), step.told) << step.key;
    }
}

TEST_F(ClipTreeTest, ATitleIsTypedInPlaceEscapeForgetsItAndItMayBeRefused) {
    Type("Mayor");
    Key(Qt::Key_Escape, Qt::NoModifier, Editor());
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(Told(), "");

    Type("Mayor");
    EXPECT_TRUE(Key(Qt::Key_Return, Qt::NoModifier, Editor())) << "else it would play, too";
    QCoreApplication::processEvents();
    EXPECT_EQ(Told(), "3:1 ");
    EXPECT_EQ(tree_.TypedTitle(), u"Mayor");

    Key(Qt::Key_F2);
    page_.setFocus();
    EXPECT_EQ(Told(), "3:1 ") << "who clicks elsewhere has typed to the end";

    editable_ = false;
    Key(Qt::Key_F2);
    EXPECT_EQ(Editor(), nullptr);
    editable_ = true;
    tree_.Mark(3);
    Key(Qt::Key_F2);
    EXPECT_EQ(Editor(), nullptr) << "the total";
}

TEST_F(ClipTreeTest, ATitleThatIsBeingTypedCountsBeforeACommandOfTheMenuDoes) {
    QMenu menu(&page_);
    menu.addAction("Editor");
    Type("Mayor");
    menu.popup(page_.mapToGlobal(QPoint()));
    EXPECT_EQ(Told(), "3:1 ");
    EXPECT_EQ(tree_.TypedTitle(), u"Mayor");
    EXPECT_EQ(Editor(), nullptr) << "it would rename what stands in its row then";
    menu.close();

    Key(Qt::Key_F2);
    QMenu own(Editor());  // Cut, Copy, Paste
    own.addAction("Paste");
    own.popup(page_.mapToGlobal(QPoint()));
    EXPECT_NE(Editor(), nullptr);
    own.close();
    EXPECT_EQ(Told(), "");
}

TEST_F(ClipTreeTest, AClipIsDraggedToWhereTheLineShows) {
    const auto drag = [this](int from, int y) {
        Mouse(QEvent::MouseButtonPress, InRow(from));
        Mouse(QEvent::MouseMove, InRow(from) + QPoint(3, 3));
        Mouse(QEvent::MouseMove, {20, y});
    };
    using Step = std::array<int, 3>;
    for (const auto& [from, y, to] :
         {Step{0, 3 * kRow, 2}, Step{2, -5, 0}, Step{1, 105, 2}, Step{2, kRow + 8, 1}}) {
        tree_.Mark(from);
        drag(from, y);
        Mouse(QEvent::MouseButtonRelease, {20, y});
        EXPECT_EQ(Told(), Format("6:%d ", from)) << from << " " << y;
        EXPECT_EQ(tree_.DropRow(), to);
    }
    tree_.Mark(0);
    drag(0, 2 * kRow);
    EXPECT_EQ(At(190, 2 * kRow), Shade(kSignal));
    Key(Qt::Key_Escape);
    EXPECT_NE(At(190, 2 * kRow), Shade(kSignal));
    Mouse(QEvent::MouseButtonRelease, {20, 2 * kRow});
    drag(0, kRow - 4);
    Mouse(QEvent::MouseButtonRelease, {20, kRow - 4});
    EXPECT_EQ(Told(), "") << "it lies where it was";
    drag(3, 0);
    Mouse(QEvent::MouseButtonRelease, {20, 0});
    EXPECT_EQ(Told(), "1:3 ") << "the total is marked, but stays";
}

}  // namespace
}  // namespace orma
