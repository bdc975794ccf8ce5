// The page and what helpers of the desktop see of it, on a display in memory.

#include "window/page_desk.h"

namespace orma::test {
namespace {

TEST_F(PageTest, ShowsTheImagePixelByPixelAndOfAChangeOnlyItsRectangle) {
    const QImage shown = page_.grab().toImage();
    ASSERT_EQ(shown.size(), QSize(kSize.width, kSize.height));
    for (int y = 0; y < kSize.height; ++y)
        for (int x = 0; x < kSize.width; ++x)
            ASSERT_EQ(shown.pixel(x, y), PixelAt(x, y) | 0xFF000000U) << x << ", " << y;

    /// What a frame really repaints.
    class PaintWatch : public QObject {
      public:
        bool eventFilter(QObject* /*receiver*/, QEvent* event) override {
            if (event->type() == QEvent::Paint)
                painted += static_cast<QPaintEvent*>(event)->region();
            return false;
        }
        QRegion painted;
    } watch;
    page_.installEventFilter(&watch);
    frames_ = 0;
    page_.Changed({10, 20, 30, 5});
    page_.Changed({100, 80, 50, 50});  // partly outside
    page_.Flush();
    EXPECT_EQ(watch.painted, QRegion(10, 20, 30, 5) + QRegion(100, 80, 20, 10));
    EXPECT_EQ(frames_, 1);
    page_.Flush();
    EXPECT_EQ(frames_, 1);
}

TEST_F(PageTest, PointerAndKeysReachTheClientAsItsOwn) {
    Mouse(QEvent::MouseMove, {5, 5}, Qt::NoButton);
    Mouse(QEvent::MouseButtonPress, {7.9, 3.2});
    Mouse(QEvent::MouseMove, {-2.5, 4});
    Mouse(QEvent::MouseButtonRelease, {8, 4});
    Mouse(QEvent::MouseButtonDblClick, {1, 1});
    Mouse(QEvent::MouseButtonPress, {2, 2}, Qt::RightButton);
    Mouse(QEvent::MouseButtonRelease, {2, 2}, Qt::RightButton);
    EXPECT_EQ(log_, "down 7,3 move -3,4 up 8,4 down 1,1 right 2,2 let 2,2 ");

    log_.clear();
    Key(QEvent::KeyPress, Qt::Key_9);
    Key(QEvent::KeyPress, Qt::Key_9, Qt::KeypadModifier, true);
    Key(QEvent::KeyRelease, Qt::Key_9, Qt::NoModifier, true);
    Key(QEvent::KeyRelease, Qt::Key_9);
    Key(QEvent::KeyPress, Qt::Key_Enter);
    Key(QEvent::KeyPress, Qt::Key_Tab);
    Key(QEvent::KeyPress, Qt::Key_Backtab, Qt::ShiftModifier);
    Key(QEvent::KeyPress, Qt::Key_Plus, Qt::ShiftModifier);
    Key(QEvent::KeyPress, Qt::Key_Z);
    Key(QEvent::KeyPress, Qt::Key_Z, Qt::ControlModifier);
    Key(QEvent::KeyPress, Qt::Key_F5);
    Key(QEvent::KeyRelease, Qt::Key_MediaRecord);
    EXPECT_EQ(log_, "39 39 -39 0d 09 09^ bb^ 5a -c1 ");
}

TEST_F(PageTest, ABoxThatTakesThePointerAwayLetsTheButtonGo) {
    QDialog box(&page_);
    const auto ask = [&] {
        QTimer::singleShot(0, &box, &QDialog::accept);
        box.exec();
        log_ += "told ";
    };
    onPress_ = ask;  // the press itself fails and says so
    Mouse(QEvent::MouseButtonPress, {7, 3});
    onPress_ = nullptr;
    EXPECT_EQ(log_, "down 7,3 told up 7,3 ");
    log_.clear();
    Mouse(QEvent::MouseButtonPress, {8, 4});
    Mouse(QEvent::MouseMove, {9, 4});
    ask();  // something else fails meanwhile
    Mouse(QEvent::MouseMove, {20, 4});
    Mouse(QEvent::MouseButtonRelease, {20, 4});
    EXPECT_EQ(log_, "down 8,4 move 9,4 up 9,4 told ");
}

TEST_F(PageTest, WheelAndTouchpadTellWholeNotches) {
    const auto turn = [&](QPoint by, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QWheelEvent event({5.5, 6}, page_.mapToGlobal(QPointF(5.5, 6)), {}, by, Qt::NoButton,
                          modifiers, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&page_, &event);
    };
    turn({0, 120});
    turn({0, -90});
    turn({0, -90});  // a fine wheel
    turn({0, -60});
    turn({240, 0});
    turn({0, -120}, Qt::ShiftModifier);
    EXPECT_EQ(log_, "wheel 5,6 1 wheel 5,6 -1 wheel 5,6 -1 across 5,6 -2 across 5,6 1 ");

    log_.clear();
    const auto spread = [&](double value, Qt::NativeGestureType type = Qt::ZoomNativeGesture) {
        QNativeGestureEvent event(type, QPointingDevice::primaryPointingDevice(), 2, {7, 8}, {7, 8},
                                  {7, 8}, value, {});
        QCoreApplication::sendEvent(&page_, &event);
    };
    for (int i = 0; i < 8; ++i)
        spread(0.1);  // 1.1 to the eighth is 2.14
    spread(90, Qt::RotateNativeGesture);
    spread(-0.8);
    spread(-1);
    EXPECT_EQ(log_, "wheel 7,8 1 wheel 7,8 -2 ");
}

TEST_F(PageTest, EveryControlWithALabelIsSeenByHelpersOfTheDesktop) {
    QAccessibleInterface* const page = QAccessible::queryAccessibleInterface(&page_);
    ASSERT_NE(page, nullptr);
    ASSERT_EQ(page->childCount(), 4);
    const auto child = [&](int index) { return page->child(index); };
    EXPECT_EQ(child(0)->role(), QAccessible::Button);
    EXPECT_EQ(child(0)->text(QAccessible::Name), "Record");
    EXPECT_FALSE(child(0)->state().checked);
    At(0).on = true;
    EXPECT_TRUE(child(0)->state().checked);
    EXPECT_EQ(child(0)->rect(), QRect(page_.mapToGlobal(QPoint(10, 10)), QSize(20, 10)));
    EXPECT_EQ(page->indexOfChild(child(2)), 2);

    At(5).value = u"-12 dB";
    EXPECT_EQ(child(3)->text(QAccessible::Value), "-12 dB");

    const QPoint knob = page_.mapToGlobal(QPoint(55, 25));
    EXPECT_EQ(page->childAt(knob.x(), knob.y()), child(2));
    const QPoint text = page_.mapToGlobal(QPoint(80, 25));
    EXPECT_EQ(page->childAt(text.x(), text.y()), child(1));

    child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    child(0)->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    child(2)->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    child(3)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(log_, "press release step-1 ");

    const ModalDialog dialog;
    child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    child(2)->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(log_, "press release step-1 ") << "a take must not begin behind a dialog";
}

TEST_F(PageTest, AControlThatIsGoneIsInvalidAndTakesNothing) {
    QAccessibleInterface* const toggle = QAccessible::queryAccessibleInterface(&page_)->child(0);
    const auto screen = std::exchange(controls_, {});
    EXPECT_FALSE(toggle->isValid());
    EXPECT_EQ(toggle->text(QAccessible::Name), "");
    toggle->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(log_, "");
}

TEST_F(PageTest, OneFileOfOursIsTakenFromTheDesktop) {
    QtMainWindow window(*this);
    ASSERT_TRUE(window.Create(u"Drop", kSize));
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find(windows, QStringLiteral("Drop"), &QWidget::windowTitle);
    ASSERT_NE(found, windows.end());
    const auto drop = [&](const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({1, 1}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(*found, &enter);
        QDropEvent event({1, 1}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(*found, &event);
        EXPECT_EQ(log_, "") << "the one who drags must not wait";
        QCoreApplication::processEvents();
        return enter.isAccepted();
    };
    EXPECT_FALSE(drop({QUrl("https://desk.invalid/a.opr")}));
    EXPECT_FALSE(drop({QUrl::fromLocalFile("/a/b.txt")}));
    EXPECT_FALSE(drop({QUrl::fromLocalFile("/a/b.opr"), QUrl::fromLocalFile("/a/c.opr")}));
    ModalDialog dialog;
    EXPECT_FALSE(drop({QUrl::fromLocalFile("/a/b.opr")})) << "what it asks is about this project";
    dialog.hide();
    EXPECT_TRUE(drop({QUrl::fromLocalFile("/a/b c.opr")}));
    EXPECT_EQ(log_, "drop /a/b c.opr ");
}

}  // namespace
}  // namespace orma::test
