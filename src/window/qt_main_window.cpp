#include "window/qt_main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDropEvent>
#include <QLayout>
#include <QMainWindow>
#include <QMenuBar>
#include <QMimeData>
#include <QScreen>
#include <QUrl>

#include "window/announcer.h"
#include "window/dialogs/qt_text.h"
#include "window/job_events.h"
#include "window/menu_bar_view.h"
#include "window/note_card.h"
#include "window/page_widget.h"

namespace orma {

class QtMainWindow::Window : public QMainWindow {
  public:
    Window(Client& client, const QString& title, Size size)
        : client_(client),
          page_(new PageWidget(client, size, this)),
          announcer_(new Announcer(this)),
          menus_(*menuBar(), client),
          job_(*page_) {
        setWindowFlags(Qt::Window | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                       Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
        setWindowTitle(title);
        setCentralWidget(page_);
        setAcceptDrops(true);
        menuBar()->setNativeMenuBar(false);  // the client area stands below it in this window
        layout()->setSizeConstraint(QLayout::SetFixedSize);
        page_->setFocus();
    }

    [[nodiscard]] PageWidget& Page() { return *page_; }
    [[nodiscard]] MenuBarView& Menus() { return menus_; }
    [[nodiscard]] JobEvents& Job() { return job_; }

    [[nodiscard]] Announcer& Speaker() { return *announcer_; }

  protected:
    void closeEvent(QCloseEvent* event) override {
        event->ignore();
        client_.OnCloseRequest();
    }

    void dragEnterEvent(QDragEnterEvent* event) override {
        if (!DroppedPath(*event).empty()) event->acceptProposedAction();
    }

    /// Whoever drags waits for the answer, and opening may ask: it comes after it.
    void dropEvent(QDropEvent* event) override {
        const Text path = DroppedPath(*event);
        if (path.empty()) return;
        event->acceptProposedAction();
        QMetaObject::invokeMethod(
            this,
            [this, path] {
                if (QApplication::activeModalWidget() == nullptr) client_.OnDrop(path);
            },
            Qt::QueuedConnection);
    }

  private:
    /// One local file that the client takes; empty for anything else, and under a dialog or a box,
    /// whose owner counts on the project that it began with.
    [[nodiscard]] Text DroppedPath(const QDropEvent& event) const {
        if (QApplication::activeModalWidget() != nullptr) return {};
        const QList<QUrl> urls = event.mimeData()->urls();
        if (urls.size() != 1 || !urls.front().isLocalFile()) return {};
        const Text path = PathFromQt(urls.front().toLocalFile());
        return client_.TakesDrop(path) ? path : Text();
    }

    Client& client_;
    PageWidget* page_;
    Announcer* announcer_;
    MenuBarView menus_;
    JobEvents job_;
};

QtMainWindow::QtMainWindow(Client& client) : client_(client) {}

QtMainWindow::~QtMainWindow() {
    ShowWaitCursor(false);
}

bool QtMainWindow::Create(const Text& title, Size client) {
    window_ = std::make_unique<Window>(client_, ToQt(title), client);
    return true;
}

void QtMainWindow::Show() {
    if (window_) window_->show();
}

void QtMainWindow::Raise() {
    if (!window_) return;
    window_->setWindowState(window_->windowState() & ~Qt::WindowMinimized);
    window_->raise();
    window_->activateWindow();
}

void QtMainWindow::Destroy() {
    window_.reset();
}

void QtMainWindow::SetMenuBar(const MenuBar& bar) {
    if (window_) window_->Menus().Show(bar);
}

void QtMainWindow::Update(const Rect& changed) {
    if (window_) window_->Page().Changed(changed);
}

/// The toolkit's own manner: a widget that was pressed gets all until the button is let go.
void QtMainWindow::CapturePointer(bool /*on*/) {}

void QtMainWindow::ShowFocus(const Rect& control) {
    if (window_) window_->Page().ShowFocus(control);
}

void QtMainWindow::ShowWaitCursor(bool on) {
    if (on == waiting_) return;
    waiting_ = on;
    if (on)
        QApplication::setOverrideCursor(Qt::WaitCursor);
    else
        QApplication::restoreOverrideCursor();
}

void QtMainWindow::Announce(const Text& text) {
    if (window_) window_->Speaker().Say(ToQt(text));
}

void QtMainWindow::ShowNote(const Note& note) {
    if (!window_) return;
    NoteCard::ShowOver(window_->Page(), note);
    Announce(note.headline + u". " + note.detail);
}

Size QtMainWindow::Display() {
    const QScreen* screen = QApplication::primaryScreen();
    return screen == nullptr ? Size{} : Size{screen->size().width(), screen->size().height()};
}

void QtMainWindow::ServeJob() {
    if (window_) window_->Job().Serve();
}

PageWidget* QtMainWindow::Page() {
    return window_ ? &window_->Page() : nullptr;
}

void QtMainWindow::EndJob() {
    if (!window_) return;
    window_->Job().Drop();
    if (window_->Job().TakeClose()) client_.OnCloseRequest();
}

bool QtMainWindow::Save(const Text& path) {
    return window_ && window_->grab().save(PathToQt(path));
}

}  // namespace orma
