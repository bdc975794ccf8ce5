#pragma once

#include <QWidget>
#include <map>
#include <vector>

#include "window/page_client.h"

namespace orma {

/// The client area: shows the window's image one to one in logical pixels (a dense display doubles
/// whole pixels), forwards pointer and keys, and makes the controls on the page usable without a
/// pointer: tooltips, a focus that Tab moves, Space to press what has it, plus and minus to turn
/// it. As long as nobody presses Tab, every key is the screen's.
class PageWidget : public QWidget {
  public:
    /// `client` outlives the widget; `size` is that of its image.
    PageWidget(PageClient& client, Size size, QWidget* parent = nullptr);

    /// The image has changed there.
    void Changed(const Rect& changed);

    /// Shows at once what has changed.
    void Flush();

    /// The controls of the screen that introduce themselves, in their order.
    [[nodiscard]] std::vector<Win*> Controls() const;

    /// Such a control that stands at that place, the smallest if several do; null without one.
    [[nodiscard]] Win* ControlAt(Point at) const;

    /// Frames that rectangle; an empty one: nothing.
    void ShowFocus(const Rect& control);
    [[nodiscard]] Win* Focused() const { return client_.Focused(); }

    /// A button as pressed and let go, a knob as turned. Nothing when the control is not on the
    /// page (any more), or while input is held back.
    void PressControl(Win& control);
    void StepControl(Win& control, int steps);

    /// While held back, controls take nothing from helpers of the desktop.
    void HoldBack(bool on) { heldBack_ = on; }

    [[nodiscard]] static bool CanPress(const Win& control);
    [[nodiscard]] static bool CanStep(const Win& control);

  protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override { mousePressEvent(event); }
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    [[nodiscard]] bool IsBlocked() const;
    void TellToggles(const Rect& changed);

    /// Two fingers have spread to so many times their distance.
    void Pinched(QPointF at, double times);

    PageClient& client_;
    QRegion unseen_;  // changed and not yet painted
    bool painting_ = false;
    bool shown_ = false;     // ever; traced, as the program's start ends with it
    bool held_ = false;      // the left button
    bool pressing_ = false;  // a press is being carried out
    Point place_;            // of the pointer while the button is held
    QRect focus_;
    bool heldBack_ = false;            // a job blocks the event loop
    QPoint turned_;                    // of the wheel, eighths of a degree that are no notch yet
    double spread_ = 0;                // of two fingers, doublings that are no notch yet
    double pinch_ = 1;                 // times that the gesture on a touch screen has spread so far
    std::map<const Win*, bool> told_;  // the toggles' state that helpers of the desktop know
};

}  // namespace orma
