#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <memory>
#include <vector>

#include "window/page_widget.h"

namespace orma {

/// Lets the screen live while a job blocks the event loop: what changed is shown, the left button
/// reaches the page and nothing else. Keys are kept for the loop; the rest of what a user can do,
/// closing the window included, and timers are dropped; sockets, and so wake-ups, wait.
class JobEvents : public QObject {
  public:
    /// `page` outlives it.
    explicit JobEvents(PageWidget& page) : page_(page) {}

    /// Handles what has arrived. Not re-entrant: within it nothing happens.
    void Serve();

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    struct KeptKey {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
    };

    /// More than anybody types while waiting.
    static constexpr std::size_t kMostKeys = 100;

    [[nodiscard]] bool IsForPage(const QObject* receiver, const QEvent& event) const;
    void Keep(QObject* receiver, const QEvent& event);

    PageWidget& page_;
    std::vector<KeptKey> keys_;
    bool serving_ = false;
};

}  // namespace orma
