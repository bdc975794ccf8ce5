#pragma once

#include <QAccessible>
#include <QApplication>
#include <QCloseEvent>
#include <QDialog>
#include <QDropEvent>
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
#include <string>

#include <gtest/gtest.h>

#include "platform/qt/qt_event_loop.h"
#include "ui/support/screen_rig.h"
#include "window/accessible_page.h"
#include "window/job_events.h"
#include "window/menu_bar_view.h"
#include "window/page_widget.h"

namespace orma::test {

inline constexpr Size kSize{120, 90};

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
        InstallAccessiblePage();
        page_.show();
        page_.setFocus();
        QCoreApplication::processEvents();
    }

    void Add(const Rect& rect, ControlLabel label) {
        controls_.push_back(std::make_unique<LoggedWin>(rig_.scene, rect, std::move(label), log_));
    }
    LoggedWin& At(std::size_t place) { return static_cast<LoggedWin&>(*controls_[place]); }

    static Pixel PixelAt(int x, int y) { return static_cast<Pixel>(x << 16 | y << 8 | (x ^ y)); }

    void Key(QEvent::Type type, int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier,
             bool again = false) {
        QKeyEvent event(type, key, modifiers, QString(), again);
        QCoreApplication::sendEvent(&page_, &event);
    }
    QMouseEvent* NewMouse(QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
        const bool up = type == QEvent::MouseButtonRelease;
        const bool moves = type == QEvent::MouseMove;
        return new QMouseEvent(type, at, page_.mapToGlobal(at), moves ? Qt::NoButton : button,
                               up ? Qt::NoButton : button, Qt::NoModifier);
    }
    void Mouse(QEvent::Type type, QPointF at, Qt::MouseButton button = Qt::LeftButton) {
        const std::unique_ptr<QMouseEvent> event(NewMouse(type, at, button));
        QCoreApplication::sendEvent(&page_, event.get());
    }

    /// A dialog over the window, behind which assistive tools and files that are dropped come.
    struct ModalDialog : QDialog {
        ModalDialog() {
            setModal(true);
            show();
        }
    };

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

    ScreenRig rig_;
    Picture image_{kSize.width, kSize.height,
                   std::vector<Pixel>(std::size_t{kSize.width} * kSize.height)};
    std::string log_;
    std::function<void()> onPress_;
    int frames_ = 0;
    MenuBar opening_;
    std::vector<std::unique_ptr<Win>> controls_;
    PageWidget page_{*this, kSize};
};

}  // namespace orma::test
