// The page, its menu bar and what helpers of the desktop see of it, on a display in memory.

#include <QAccessible>
#include <QAccessibleActionInterface>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
#include <QGestureEvent>
#include <QImage>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMimeData>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QTimer>
#include <QUrl>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <string>

#include <gtest/gtest.h>

#include "platform/qt/qt_event_loop.h"
#include "support/memory_storage.h"
#include "ui/skin/skin.h"
#include "window/accessible_page.h"
#include "window/job_events.h"
#include "window/menu_bar_view.h"
#include "window/page_widget.h"

namespace orma {
namespace {

constexpr Size kSize{120, 90};

class NoInk : public Ink {
  public:
    [[nodiscard]] Size Measure(const Text& /*text*/, const Font& /*font*/) override { return {}; }
    void DrawText(Picture& /*target*/, const Rect& /*clip*/, Point /*origin*/, const Text& /*text*/,
                  const Font& /*font*/, Colour /*colour*/) override {}
    void DrawLine(Picture& /*target*/, const Rect& /*clip*/, std::span<const Point> /*points*/,
                  int /*width*/, Colour /*colour*/) override {}
};

class NoBitmaps : public BuiltInBitmaps {
  public:
    [[nodiscard]] std::vector<std::uint8_t> File(int /*number*/, bool /*doubled*/) override {
        return {};
    }
};

/// Writes down what is done to it.
class LoggedWin : public Win {
  public:
    LoggedWin(const Scene& scene, const Rect& rect, ControlLabel label, std::string& log)
        : Win(scene, rect), log_(log) {
        SetLabel(std::move(label));
    }
    void Press() override { log_ += "press "; }
    void Release() override { log_ += "release "; }
    void StepBy(int steps) override { log_ += "step" + std::to_string(steps) + " "; }
    [[nodiscard]] Text Value() const override { return value; }
    [[nodiscard]] bool IsOn() const override { return on; }

    Text value;
    bool on = false;

  private:
    std::string& log_;
};

/// A page with a toggle, a knob within a text, a meter, and a control that nobody is told of.
class PageTest : public ::testing::Test, public QtMainWindow::Client {
  protected:
    PageTest() {
        Add({10, 10, 20, 10}, {ControlRole::kToggle, u"Record", u"Records", u"9"});
        controls_.push_back(nullptr);
        Add({40, 10, 50, 40}, {ControlRole::kText, u"Volume", {}, {}});
        Add({50, 20, 10, 10}, {ControlRole::kKnob, u"Volume knob", {}, {}});
        Add({0, 60, 10, 10}, {});
        Add({100, 0, 20, 80}, {ControlRole::kMeter, u"Level", {}, {}});
        for (int y = 0; y < kSize.height; ++y)
            for (int x = 0; x < kSize.width; ++x)
                image_.At(x, y) = PixelAt(x, y);
    }

    void Add(const Rect& rect, ControlLabel label) {
        controls_.push_back(std::make_unique<LoggedWin>(scene_, rect, std::move(label), log_));
    }
    LoggedWin& At(std::size_t place) { return static_cast<LoggedWin&>(*controls_[place]); }

    static Pixel PixelAt(int x, int y) { return static_cast<Pixel>(x << 16 | y << 8 | (x ^ y)); }

    /// All of them at once, as the display shows them.
    QImage Shown() { return page_.grab().toImage(); }

    void Key(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
             bool again = false) {
        QKeyEvent event(type, key, modifiers, QString(), again);
        QCoreApplication::sendEvent(&page_, &event);
    }
    void Mouse(QEvent::Type type, QPointF at, Qt::MouseButton button, Qt::MouseButtons held) {
        QMouseEvent event(type, at, page_.mapToGlobal(at), button, held, Qt::NoModifier);
        QCoreApplication::sendEvent(&page_, &event);
    }

    // The client.
    const Picture& Image() override { return image_; }
    std::span<const std::unique_ptr<Win>> Controls() override { return controls_; }
    Win* Focused() override { return nullptr; }
    void BeforePaint() override { ++frames_; }
    void Log(const char* what, Point at) { log_ += Format("%s %d,%d ", what, at.x, at.y); }
    void LeftDown(Point at) override {
        Log("down", at);
        if (onPress_) onPress_();
    }
    void LeftUp(Point at) override { Log("up", at); }
    void Moved(Point at) override { Log("move", at); }
    void Wheel(Point at, int steps, bool sideways) override {
        Log(sideways ? "across" : "wheel", at);
        log_ += std::to_string(steps) + " ";
    }
    void RightDown(Point at) override { Log("right", at); }
    void RightUp(Point at) override { Log("let", at); }
    void KeyDown(orma::Key key, bool shift) override {
        log_ += Format("%02x%s ", static_cast<int>(key), shift ? "^" : "");
    }
    void KeyUp(orma::Key key) override { log_ += Format("-%02x ", static_cast<int>(key)); }
    void OnCommand(Command command) override {
        log_ += Format("command %d ", static_cast<int>(command));
    }
    const Menu& OnMenuOpening(std::size_t place) override { return opening_.menus[place]; }
    const Picture& MenuBitmap() override { return image_; }
    bool TakesDrop(const Text& path) override { return path.ends_with(u".opr"); }
    void OnDrop(const Text& path) override { log_ += "drop " + ToUtf8(path) + " "; }
    void OnCloseRequest() override { log_ += "close "; }

    test::MemoryStorage storage_;
    NoBitmaps bitmaps_;
    NoInk ink_;
    Picture image_{kSize.width, kSize.height,
                   std::vector<Pixel>(std::size_t{kSize.width} * kSize.height)};
    Skin skin_{storage_, bitmaps_, u"/", kSize, false};
    Canvas canvas_{image_, ink_, [](const Rect&) {}};
    Pointer pointer_;
    Scene scene_{skin_, canvas_, pointer_, {}};
    std::string log_;
    std::function<void()> onPress_;
    int frames_ = 0;
    MenuBar opening_;
    std::vector<std::unique_ptr<Win>> controls_;
    PageWidget page_{*this, kSize};
};

TEST_F(PageTest, ShowsTheImagePixelByPixelAndOfAChangeOnlyItsRectangle) {
    page_.show();
    QCoreApplication::processEvents();
    const QImage shown = Shown();
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
    page_.Changed({200, 0, 10, 10});
    page_.Flush();
    EXPECT_EQ(watch.painted, QRegion(10, 20, 30, 5) + QRegion(100, 80, 20, 10));
    EXPECT_EQ(frames_, 1);
    page_.Flush();
    EXPECT_EQ(frames_, 1);
}

TEST_F(PageTest, PointerAndKeysReachTheClientAsItsOwn) {
    Mouse(QEvent::MouseMove, {5, 5}, Qt::NoButton, Qt::NoButton);
    Mouse(QEvent::MouseButtonPress, {7.9, 3.2}, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseMove, {-2.5, 4}, Qt::NoButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, {8, 4}, Qt::LeftButton, Qt::NoButton);
    Mouse(QEvent::MouseButtonDblClick, {1, 1}, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonPress, {2, 2}, Qt::RightButton, Qt::RightButton);
    Mouse(QEvent::MouseButtonRelease, {2, 2}, Qt::RightButton, Qt::NoButton);
    EXPECT_EQ(log_, "down 7,3 move -3,4 up 8,4 down 1,1 right 2,2 let 2,2 ");

    log_.clear();
    Key(QEvent::KeyPress, Qt::Key_9);
    Key(QEvent::KeyPress, Qt::Key_9, Qt::KeypadModifier, true);
    Key(QEvent::KeyRelease, Qt::Key_9, Qt::NoModifier, true);
    Key(QEvent::KeyRelease, Qt::Key_9);
    Key(QEvent::KeyPress, Qt::Key_Enter);
    Key(QEvent::KeyPress, Qt::Key_Backtab, Qt::ShiftModifier);
    Key(QEvent::KeyPress, Qt::Key_Plus, Qt::ShiftModifier);
    Key(QEvent::KeyPress, Qt::Key_Z);
    Key(QEvent::KeyPress, Qt::Key_Z, Qt::ControlModifier);
    Key(QEvent::KeyPress, Qt::Key_F5);
    Key(QEvent::KeyRelease, Qt::Key_MediaRecord);
    EXPECT_EQ(log_, "39 39 -39 0d 09^ bb^ 5a -c1 ");
    log_.clear();
    Key(QEvent::KeyPress, Qt::Key_Tab);
    EXPECT_EQ(log_, "09 ");
}

TEST_F(PageTest, ABoxThatTakesThePointerAwayLetsTheButtonGo) {
    page_.show();
    QDialog box(&page_);
    const auto ask = [&] {
        QTimer::singleShot(0, &box, &QDialog::accept);
        box.exec();
        log_ += "told ";
    };
    onPress_ = ask;  // the press itself fails and says so
    Mouse(QEvent::MouseButtonPress, {7, 3}, Qt::LeftButton, Qt::LeftButton);
    onPress_ = nullptr;
    EXPECT_EQ(log_, "down 7,3 told up 7,3 ");
    log_.clear();
    Mouse(QEvent::MouseButtonPress, {8, 4}, Qt::LeftButton, Qt::LeftButton);
    Mouse(QEvent::MouseMove, {9, 4}, Qt::NoButton, Qt::LeftButton);
    ask();  // something else fails meanwhile
    Mouse(QEvent::MouseMove, {20, 4}, Qt::NoButton, Qt::LeftButton);
    Mouse(QEvent::MouseButtonRelease, {20, 4}, Qt::LeftButton, Qt::NoButton);
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

    log_.clear();
    page_.move(0, 0);
    QPinchGesture pinch;
    pinch.setCenterPoint(page_.mapToGlobal(QPointF(9, 9)));
    for (const double total : {1.6, 1.6, 2.4, 2.4, 0.5}) {
        pinch.setTotalScaleFactor(total);
        QGestureEvent event({&pinch});
        QCoreApplication::sendEvent(&page_, &event);
    }
    EXPECT_EQ(log_, "wheel 9,9 1 wheel 9,9 -2 ");
}

TEST_F(PageTest, EveryControlWithALabelIsSeenByHelpersOfTheDesktop) {
    InstallAccessiblePage();
    page_.show();
    QAccessibleInterface* const page = QAccessible::queryAccessibleInterface(&page_);
    ASSERT_NE(page, nullptr);
    ASSERT_EQ(page->childCount(), 4);
    const auto child = [&](int index) { return page->child(index); };
    EXPECT_EQ(child(4), nullptr);

    EXPECT_EQ(child(0)->role(), QAccessible::Button);
    EXPECT_EQ(child(0)->text(QAccessible::Name), "Record");
    EXPECT_EQ(child(0)->text(QAccessible::Description), "Records");
    EXPECT_EQ(child(0)->text(QAccessible::Accelerator), "9");
    EXPECT_TRUE(child(0)->state().checkable);
    EXPECT_FALSE(child(0)->state().checked);
    At(0).on = true;
    EXPECT_TRUE(child(0)->state().checked);
    EXPECT_EQ(child(0)->rect(), QRect(page_.mapToGlobal(QPoint(10, 10)), QSize(20, 10)));
    EXPECT_EQ(page->indexOfChild(child(2)), 2);

    At(5).value = u"-12 dB";
    EXPECT_EQ(child(3)->text(QAccessible::Value), "-12 dB");
    EXPECT_EQ(child(3)->actionInterface()->actionNames(), QStringList());

    const QPoint knob = page_.mapToGlobal(QPoint(55, 25));
    EXPECT_EQ(page->childAt(knob.x(), knob.y()), child(2));
    const QPoint text = page_.mapToGlobal(QPoint(80, 25));
    EXPECT_EQ(page->childAt(text.x(), text.y()), child(1));

    child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    child(0)->actionInterface()->doAction(QAccessibleActionInterface::increaseAction());
    child(2)->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    child(3)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(log_, "press release step-1 ");

    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    child(0)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    child(2)->actionInterface()->doAction(QAccessibleActionInterface::decreaseAction());
    EXPECT_EQ(log_, "press release step-1 ") << "a take must not begin behind a dialog";
}

TEST_F(PageTest, AControlThatIsGoneIsInvalidAndTakesNothing) {
    InstallAccessiblePage();
    QAccessibleInterface* const toggle = QAccessible::queryAccessibleInterface(&page_)->child(0);
    const auto screen = std::exchange(controls_, {});
    EXPECT_FALSE(toggle->isValid());
    EXPECT_TRUE(toggle->state().invalid);
    EXPECT_EQ(toggle->text(QAccessible::Name), "");
    toggle->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_EQ(log_, "");
}

TEST_F(PageTest, DuringAJobThePointerAloneGetsThroughKeysAndWakeupsWait) {
    QtEventLoop loop;
    page_.show();
    page_.setFocus();
    QCoreApplication::processEvents();
    JobEvents job(page_);
    const auto wakeup = loop.CreateWakeup([&] {
        log_ += "wakeup ";
        loop.Post([&] { loop.Quit(0); });
    });
    const auto post = [&](QEvent::Type type) {
        auto* const event = new QMouseEvent(
            type, QPointF(3, 4), page_.mapToGlobal(QPointF(3, 4)), Qt::LeftButton,
            type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
        QCoreApplication::postEvent(&page_, event);
    };
    const auto timer = loop.StartTimer(1, [&] { log_ += "tick "; });
    loop.Post([&] {
        wakeup->Signal();
        post(QEvent::MouseButtonPress);
        QCoreApplication::postEvent(page_.windowHandle(),
                                    new QKeyEvent(QEvent::KeyPress, Qt::Key_1, Qt::NoModifier));
        QCoreApplication::postEvent(&page_, new QEvent(QEvent::ContextMenu));
        post(QEvent::MouseButtonRelease);
        page_.Changed({0, 0, 5, 5});
        frames_ = 0;
        log_.clear();
        for (int slice = 0; slice < 3; ++slice)
            job.Serve();
        EXPECT_EQ(frames_, 1);
        EXPECT_EQ(log_, "down 3,4 up 3,4 ");
    });
    loop.Run();
    EXPECT_NE(log_.find("wakeup"), std::string::npos) << log_;
    QCoreApplication::processEvents();
    EXPECT_NE(log_.find("31 "), std::string::npos) << log_;
}

TEST_F(PageTest, MenusFollowTheirDataAndTellCommands) {
    QMenuBar bar;
    MenuBarView view(bar, *this);
    using Kind = MenuItem::Kind;
    opening_.menus = {{u"File",
                       {{Kind::kBitmap, Command::kPublishClip, u"Clip", true, false},
                        {Kind::kCommand, Command::kExit, u"Exit", true, false}}},
                      {u"  Edit  ",
                       {{Kind::kCommand, Command::kMark, u"Mark", false, false},
                        {Kind::kSeparator, Command::kNone, u"", true, false},
                        {Kind::kCommand, Command::kEditor, u"Editor", true, true}}}};
    view.Show(opening_);
    ASSERT_EQ(bar.actions().size(), 2);
    QMenu* const edit = bar.actions()[1]->menu();
    EXPECT_EQ(edit->title(), "  Edit  ");
    ASSERT_EQ(edit->actions().size(), 3);
    EXPECT_FALSE(edit->actions()[0]->isEnabled());
    EXPECT_TRUE(edit->actions()[1]->isSeparator());
    EXPECT_TRUE(edit->actions()[2]->isChecked());
    QAction* const editor = edit->actions()[2];

    // As it opens, the menu is brought up to date; what only changed its state stays the same line.
    opening_.menus[1].items[0].enabled = true;
    opening_.menus[1].items[2].ticked = false;
    emit edit->aboutToShow();
    EXPECT_TRUE(edit->actions()[0]->isEnabled());
    EXPECT_EQ(edit->actions()[2], editor);
    EXPECT_FALSE(editor->isChecked());
    opening_.menus[1].items = {{Kind::kCommand, Command::kMark, u"Delete marker", true, false}};
    emit edit->aboutToShow();
    ASSERT_EQ(edit->actions().size(), 1);
    EXPECT_EQ(edit->actions()[0]->text(), "Delete marker");

    edit->actions()[0]->trigger();
    bar.actions()[0]->menu()->actions()[0]->trigger();
    EXPECT_EQ(log_, "command 40043 command 40020 ");

    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    edit->actions()[0]->trigger();
    EXPECT_EQ(log_, "command 40043 command 40020 ") << "no job within a job's dialog";
}

TEST_F(PageTest, ASubmenuIsMadeAnewByTheChoiceWithinIt) {
    QMenuBar bar;
    MenuBarView view(bar, *this);
    using Kind = MenuItem::Kind;
    const auto file = [](const char16_t* first, bool enabled) {
        return MenuBar{{{u"File",
                         {{.kind = Kind::kSubmenu,
                           .text = u"Recent",
                           .items = {{.command = Command::kNone, .text = first, .enabled = enabled},
                                     {.command = Command::kExit, .text = u"b"}}}}}}};
    };
    view.Show(file(u"one & two", false));
    QMenu* const menu = bar.actions()[0]->menu();
    ASSERT_EQ(menu->actions().size(), 1);
    QMenu* submenu = menu->actions()[0]->menu();
    ASSERT_NE(submenu, nullptr);
    ASSERT_EQ(submenu->actions().size(), 2);
    EXPECT_EQ(submenu->actions()[0]->text(), "one && two");
    EXPECT_FALSE(submenu->actions()[0]->isEnabled());
    view.Show(file(u"one & two", true));
    EXPECT_EQ(menu->actions()[0]->menu(), submenu) << "the same lines";
    EXPECT_TRUE(submenu->actions()[0]->isEnabled());

    const QMetaObject::Connection again = QObject::connect(
        submenu->actions()[1], &QAction::triggered, [&] { view.Show(file(u"another", true)); });
    submenu->actions()[1]->trigger();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QObject::disconnect(again);
    submenu = menu->actions()[0]->menu();
    ASSERT_EQ(submenu->actions().size(), 2);
    EXPECT_EQ(submenu->actions()[0]->text(), "another");
    EXPECT_EQ(log_, "command 40024 ");
}

TEST_F(PageTest, OneFileOfOursIsTakenFromTheDesktop) {
    QtMainWindow window(*this);
    ASSERT_TRUE(window.Create(u"Drop", kSize));
    const auto windows = QApplication::topLevelWidgets();
    const auto found = std::ranges::find(windows, QStringLiteral("Drop"), &QWidget::windowTitle);
    ASSERT_NE(found, windows.end());
    QWidget* const target = *found;
    const auto drop = [&](const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({1, 1}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        enter.ignore();
        QCoreApplication::sendEvent(target, &enter);
        QDropEvent event({1, 1}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(target, &event);
        EXPECT_EQ(log_, "") << "the one who drags must not wait";
        QCoreApplication::processEvents();
        return enter.isAccepted();
    };
    EXPECT_FALSE(drop({QUrl("https://desk.invalid/a.opr")}));
    EXPECT_FALSE(drop({QUrl::fromLocalFile("/a/b.txt")}));
    EXPECT_FALSE(drop({QUrl::fromLocalFile("/a/b.opr"), QUrl::fromLocalFile("/a/c.opr")}));
    EXPECT_EQ(log_, "");
    QDialog dialog;
    dialog.setModal(true);
    dialog.show();
    EXPECT_FALSE(drop({QUrl::fromLocalFile("/a/b.opr")})) << "what it asks is about this project";
    EXPECT_EQ(log_, "");
    dialog.hide();
    EXPECT_TRUE(drop({QUrl::fromLocalFile("/a/b c.opr")}));
    EXPECT_EQ(log_, "drop /a/b c.opr ");
}

TEST_F(PageTest, AfterAJobClicksAreDroppedAndAWishToCloseIsKnown) {
    page_.show();
    QCoreApplication::processEvents();
    JobEvents job(page_);
    const auto post = [&](QEvent::Type type) {
        QCoreApplication::postEvent(
            &page_,
            new QMouseEvent(type, QPointF(3, 4), page_.mapToGlobal(QPointF(3, 4)), Qt::LeftButton,
                            type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton,
                            Qt::NoModifier));
    };
    post(QEvent::MouseButtonPress);
    QCoreApplication::processEvents();
    log_.clear();
    post(QEvent::MouseButtonPress);
    post(QEvent::MouseButtonRelease);  // of the button that was held when the job began
    QCoreApplication::postEvent(page_.windowHandle(), new QCloseEvent);
    job.Drop();
    EXPECT_EQ(log_, "up 3,4 ");
    EXPECT_TRUE(page_.isVisible());
    EXPECT_TRUE(job.TakeClose());
    EXPECT_FALSE(job.TakeClose());
    post(QEvent::MouseButtonPress);
    job.Serve();
    EXPECT_EQ(log_, "up 3,4 down 3,4 ");
}

}  // namespace
}  // namespace orma
