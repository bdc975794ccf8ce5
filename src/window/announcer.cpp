#include "window/announcer.h"

#include <QAccessibleWidget>

namespace orma {

Announcer::Announcer(QWidget* window) : QWidget(window) {
    setFixedSize(0, 0);
}

void Announcer::Say(const QString& text) {
    setAccessibleName(text);
    // On Linux the toolkit passes no alerts on; readers speak a notification that appears.
    // Elsewhere it is the alert.
    for (const QAccessible::Event kind : {QAccessible::ObjectShow, QAccessible::Alert}) {
        QAccessibleEvent said(this, kind);
        QAccessible::updateAccessibility(&said);
    }
}

QAccessibleInterface* AccessibleAnnouncer(Announcer& announcer) {
    return new QAccessibleWidget(&announcer, QAccessible::Notification);
}

}  // namespace orma
