#pragma once

#include <QEvent>
#include <QObject>
#include <QPointer>
#include <memory>
#include <utility>
#include <vector>

#include "window/page_widget.h"

namespace orma {

/// Lets the screen live while a job blocks the event loop: what changed is shown, the left button
/// reaches the page and nothing else. Keys are kept for the loop, a wish to close the window for
/// the job's end; the rest of what a user can do, and timers, are dropped; sockets, and so
/// wake-ups, wait.
class JobEvents : public QObject {
  public:
    /// `page` outlives it.
    explicit JobEvents(PageWidget& page) : page_(page) {}

    /// Handles what has arrived. Not re-entrant: within it nothing happens.
    void Serve();

    /// The job is over: drops what the pointer did and nobody handled. A left button that is let go
    /// still counts, or the toolkit would take it for held.
    void Drop();

    /// True once after the user wanted to close the window.
    [[nodiscard]] bool TakeClose() { return std::exchange(closeAsked_, false); }

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    struct KeptKey {
        QPointer<QObject> receiver;
        std::unique_ptr<QEvent> event;
    };

    /// More than anybody types while waiting.
    static constexpr std::size_t kMostKeys = 100;

    [[nodiscard]] bool IsWindow(const QObject* receiver) const;
    [[nodiscard]] bool IsForPage(const QObject* receiver, const QEvent& event) const;
    void Keep(QObject* receiver, const QEvent& event);

    PageWidget& page_;
    std::vector<KeptKey> keys_;
    bool serving_ = false;
    bool dropping_ = false;
    bool closeAsked_ = false;
};

}  // namespace orma
