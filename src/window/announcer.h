#pragma once

#include <QString>
#include <QWidget>

class QAccessibleInterface;

namespace orma {

/// Has a screen reader say something that has no place of its own in the window. Nobody sees it. UI
/// thread.
class Announcer : public QWidget {
  public:
    explicit Announcer(QWidget* window);

    /// What was said before is cut short by most readers, and is not repeated.
    void Say(const QString& text);
};

/// How helpers of the desktop see it: as a notification, named by what is said.
[[nodiscard]] QAccessibleInterface* AccessibleAnnouncer(Announcer& announcer);

}  // namespace orma
