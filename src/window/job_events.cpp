#include "window/job_events.h"

#include <QCoreApplication>
#include <QMouseEvent>
#include <QWindow>

namespace orma {

void JobEvents::Serve() {
    if (serving_) return;
    serving_ = true;
    page_.HoldBack(true);
    page_.Flush();
    qApp->installEventFilter(this);
    QCoreApplication::processEvents(QEventLoop::ExcludeSocketNotifiers);
    qApp->removeEventFilter(this);
    page_.Flush();
    page_.HoldBack(false);
    for (KeptKey& key : keys_)
        if (key.receiver) QCoreApplication::postEvent(key.receiver, key.event.release());
    keys_.clear();
    serving_ = false;
}

void JobEvents::Drop() {
    dropping_ = true;
    Serve();
    dropping_ = false;
}

bool JobEvents::IsWindow(const QObject* receiver) const {
    return receiver == page_.window()->windowHandle();
}

bool JobEvents::IsForPage(const QObject* receiver, const QEvent& event) const {
    if (dropping_ && event.type() != QEvent::MouseButtonRelease) return false;
    const auto& mouse = static_cast<const QMouseEvent&>(event);
    return mouse.button() == Qt::LeftButton && (receiver == &page_ || IsWindow(receiver));
}

void JobEvents::Keep(QObject* receiver, const QEvent& event) {
    // Only as the window gets them: widgets get them from there.
    if (receiver->isWindowType() && keys_.size() < kMostKeys)
        keys_.push_back({receiver, std::unique_ptr<QEvent>(event.clone())});
}

bool JobEvents::eventFilter(QObject* receiver, QEvent* event) {
    switch (event->type()) {
        case QEvent::MouseButtonPress:
        case QEvent::MouseButtonRelease:
        case QEvent::MouseButtonDblClick:
            return !IsForPage(receiver, *event);
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            Keep(receiver, *event);
            return true;
        case QEvent::Close:
            closeAsked_ = closeAsked_ || IsWindow(receiver);
            event->ignore();
            return true;
        case QEvent::SockAct:  // comes again; not every dispatcher leaves it out when asked to
            return true;
        case QEvent::Timer:  // a window's own timer brings its next frame
            return !receiver->isWindowType();
        case QEvent::MouseMove:
        case QEvent::Wheel:
        case QEvent::ContextMenu:
        case QEvent::ToolTip:
        case QEvent::Shortcut:
        case QEvent::ShortcutOverride:
        case QEvent::TabletMove:
        case QEvent::TabletPress:
        case QEvent::TabletRelease:
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::NativeGesture:
        case QEvent::InputMethod:
        case QEvent::DragEnter:
        case QEvent::DragMove:
        case QEvent::Drop:
            return true;
        default:
            return false;
    }
}

}  // namespace orma
