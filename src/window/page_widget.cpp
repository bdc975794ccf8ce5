#include "window/page_widget.h"

#include <QAccessible>
#include <QApplication>
#include <QGestureEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QToolTip>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>

#include "base/trace.h"
#include "window/dialogs/qt_text.h"
#include "window/qt_keys.h"

namespace orma {
namespace {

QRect QtRect(const Rect& rect) {
    return {rect.x, rect.y, rect.w, rect.h};
}

Point PlaceOf(QPointF at) {
    return {static_cast<int>(std::floor(at.x())), static_cast<int>(std::floor(at.y()))};
}

Point PlaceOf(const QMouseEvent& event) {
    return PlaceOf(event.position());
}

/// Takes the whole notches out of what has gathered.
int TakeNotches(int& gathered) {
    const int notches = gathered / QWheelEvent::DefaultDeltasPerStep;
    gathered %= QWheelEvent::DefaultDeltasPerStep;
    return notches;
}

constexpr int kStripRows = 32;

/// Draws that part of the picture with the opaque pixels that every display understands, a strip at
/// a time: an image of the whole page would be allocated with every frame.
void DrawPart(QPainter& painter, const Picture& picture, const QRect& part) {
    QImage strip(part.width(), std::min(part.height(), kStripRows), QImage::Format_RGB32);
    for (int y = 0; y < part.height(); y += strip.height()) {
        const int rows = std::min(strip.height(), part.height() - y);
        for (int row = 0; row < rows; ++row) {
            const Pixel* const from =
                &picture.pixels[picture.PlaceOf(part.x(), part.y() + y + row)];
            std::transform(from, from + part.width(), reinterpret_cast<QRgb*>(strip.scanLine(row)),
                           [](Pixel pixel) { return pixel | 0xFF000000U; });
        }
        painter.drawImage(QPoint(part.x(), part.y() + y), strip, QRect(0, 0, part.width(), rows));
    }
}

QString TooltipOf(const ControlLabel& label) {
    QString text = ToQt(label.name);
    if (!label.shortcut.empty()) text += QStringLiteral(" (%1)").arg(ToQt(label.shortcut));
    if (!label.hint.empty()) text += u'\n' + ToQt(label.hint);
    return text;
}

}  // namespace

PageWidget::PageWidget(PageClient& client, Size size, QWidget* parent)
    : QWidget(parent), client_(client) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    setFixedSize(size.width, size.height);
    window()->installEventFilter(this);
    grabGesture(Qt::PinchGesture);
}

void PageWidget::Changed(const Rect& changed) {
    const QRect rect = QtRect(changed).intersected(this->rect());
    if (rect.isEmpty()) return;
    unseen_ += rect;
    if (!painting_) update(rect);
    if (QAccessible::isActive()) TellToggles(changed);
}

void PageWidget::Flush() {
    if (!unseen_.isEmpty()) repaint(unseen_);
}

std::vector<Win*> PageWidget::Controls() const {
    std::vector<Win*> controls = Singly(client_.Controls());
    std::erase_if(controls,
                  [](const Win* control) { return control->Label().role == ControlRole::kNone; });
    return controls;
}

Win* PageWidget::ControlAt(Point at) const {
    Win* found = nullptr;
    const auto area = [](const Win& win) { return win.Bounds().w * win.Bounds().h; };
    for (Win* control : Controls())
        if (control->Bounds().Contains(at) && (found == nullptr || area(*control) < area(*found)))
            found = control;
    return found;
}

void PageWidget::ShowFocus(const Rect& control) {
    update(focus_);
    focus_ = QtRect(control);
    update(focus_);
    Win* const focused = Focused();
    if (focused == nullptr || !QAccessible::isActive()) return;
    const auto controls = Controls();
    const auto at = std::ranges::find(controls, focused);
    if (at == controls.end()) return;
    QAccessibleEvent told(this, QAccessible::Focus);
    told.setChild(static_cast<int>(at - controls.begin()));
    QAccessible::updateAccessibility(&told);
}

bool PageWidget::CanPress(const Win& control) {
    const ControlRole role = control.Label().role;
    return role == ControlRole::kButton || role == ControlRole::kToggle;
}

bool PageWidget::CanStep(const Win& control) {
    const ControlRole role = control.Label().role;
    return role == ControlRole::kKnob || role == ControlRole::kScrollBar ||
           role == ControlRole::kGraph;
}

/// Assistive tools reach the page past a dialog, unlike pointer and keys.
bool PageWidget::IsBlocked() const {
    return heldBack_ || QApplication::activeModalWidget() != nullptr;
}

void PageWidget::PressControl(Win& control) {
    const auto here = [&] { return std::ranges::count(Controls(), &control) != 0; };
    if (IsBlocked() || !here() || !CanPress(control)) return;
    control.Press();
    // What it did may have led to another screen, where it must not paint.
    if (here()) control.Release();
}

void PageWidget::StepControl(Win& control, int steps) {
    if (!IsBlocked() && std::ranges::count(Controls(), &control) != 0 && CanStep(control))
        control.StepBy(steps);
}

void PageWidget::TellToggles(const Rect& changed) {
    const auto controls = Controls();
    for (std::size_t i = 0; i < controls.size(); ++i) {
        const Win& control = *controls[i];
        if (control.Label().role != ControlRole::kToggle) continue;
        if (Common(control.Bounds(), changed).IsEmpty()) continue;
        const bool on = control.IsOn();
        const auto [known, isNew] = told_.try_emplace(&control, on);
        if (isNew || std::exchange(known->second, on) == on) continue;
        QAccessible::State which;
        which.checked = true;
        QAccessibleStateChangeEvent told(this, which);
        told.setChild(static_cast<int>(i));
        QAccessible::updateAccessibility(&told);
    }
}

// A box takes the pointer away: that the button is let go is told to nobody then.
bool PageWidget::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::WindowBlocked && std::exchange(held_, false) && !pressing_)
        client_.LeftUp(place_);
    return QWidget::eventFilter(watched, event);
}

/// A touchpad tells the spread since the last event, a touch screen by a gesture.
bool PageWidget::event(QEvent* event) {
    if (event->type() == QEvent::NativeGesture) {
        const auto& native = *static_cast<QNativeGestureEvent*>(event);
        if (native.gestureType() != Qt::ZoomNativeGesture) return QWidget::event(event);
        Pinched(native.position(), 1 + native.value());
        return true;
    }
    if (event->type() == QEvent::Gesture) {
        const auto* const pinch = static_cast<QPinchGesture*>(
            static_cast<QGestureEvent*>(event)->gesture(Qt::PinchGesture));
        if (pinch == nullptr) return QWidget::event(event);
        // Told again for each finger, so what counts is the whole.
        if (pinch->state() == Qt::GestureStarted) pinch_ = 1;
        const double before = std::exchange(pinch_, pinch->totalScaleFactor());
        Pinched(mapFromGlobal(pinch->centerPoint()), pinch_ / before);
        return true;
    }
    if (event->type() != QEvent::ToolTip) return QWidget::event(event);
    const auto& help = *static_cast<QHelpEvent*>(event);
    const Win* control = ControlAt({help.pos().x(), help.pos().y()});
    if (control == nullptr)
        QToolTip::hideText();
    else
        QToolTip::showText(help.globalPos(), TooltipOf(control->Label()), this,
                           QtRect(control->Bounds()));
    return true;
}

void PageWidget::paintEvent(QPaintEvent* event) {
    painting_ = true;
    client_.BeforePaint();
    painting_ = false;
    QPainter painter(this);
    const Picture& picture = client_.Image();
    for (const QRect& asked : event->region()) {
        const QRect rect = asked.intersected(QtRect(picture.Bounds()));
        if (!rect.isEmpty()) DrawPart(painter, picture, rect);
    }
    unseen_ -= event->region();
    if (!unseen_.isEmpty()) update(unseen_);
    if (!std::exchange(shown_, true)) Trace("First frame");
    if (focus_.isEmpty()) return;
    // Two lines of contrary brightness are seen on every skin.
    const QRect ring = focus_.adjusted(0, 0, -1, -1);
    painter.setPen(Qt::black);
    painter.drawRect(ring);
    painter.setPen(Qt::white);
    painter.drawRect(ring.adjusted(1, 1, -1, -1));
}

void PageWidget::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) client_.RightDown(PlaceOf(*event));
    if (event->button() != Qt::LeftButton) return;
    place_ = PlaceOf(*event);
    held_ = true;
    pressing_ = true;
    client_.LeftDown(place_);
    pressing_ = false;
    if (!held_) client_.LeftUp(place_);
}

void PageWidget::mouseMoveEvent(QMouseEvent* event) {
    if ((event->buttons() & Qt::LeftButton) == 0 || !held_) return;
    place_ = PlaceOf(*event);
    client_.Moved(place_);
}

void PageWidget::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::RightButton) client_.RightUp(PlaceOf(*event));
    if (event->button() == Qt::LeftButton && std::exchange(held_, false))
        client_.LeftUp(PlaceOf(*event));
}

void PageWidget::wheelEvent(QWheelEvent* event) {
    // To the left is positive. Shift lays an upright wheel on its side.
    const QPoint by = event->angleDelta();
    const bool laid = (event->modifiers() & Qt::ShiftModifier) != 0 && by.x() == 0;
    turned_ += laid ? by.transposed() : by;
    const Point at = PlaceOf(event->position());
    if (const int across = TakeNotches(turned_.rx())) client_.Wheel(at, -across, true);
    if (const int away = TakeNotches(turned_.ry())) client_.Wheel(at, away, false);
    event->accept();
}

void PageWidget::Pinched(QPointF at, double times) {
    if (!(times > 0) || !std::isfinite(times)) return;
    spread_ += std::log2(times);
    const double doublings = std::trunc(spread_);
    spread_ -= doublings;
    if (doublings != 0) client_.Wheel(PlaceOf(at), static_cast<int>(doublings), false);
}

void PageWidget::keyPressEvent(QKeyEvent* event) {
    const Key key = KeyOf(*event);
    if (key == Key::kOther)
        QWidget::keyPressEvent(event);
    else
        client_.KeyDown(key, (event->modifiers() & Qt::ShiftModifier) != 0);
}

void PageWidget::keyReleaseEvent(QKeyEvent* event) {
    const Key key = KeyOf(*event);
    if (key == Key::kOther)
        QWidget::keyReleaseEvent(event);
    else if (!event->isAutoRepeat())
        client_.KeyUp(key);
}

/// There is nothing beside the page to go to: Tab is a key like any other.
bool PageWidget::focusNextPrevChild(bool /*next*/) {
    return false;
}

}  // namespace orma
