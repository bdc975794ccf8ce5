// bench_bare_window FILE: the least that a program of this toolkit can be, a menu bar and a page of
// one colour as large as the window of orma-edit. It writes "First frame" into FILE once the page
// is painted, and stays until it is ended.

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QPainter>
#include <cstdio>

namespace {

class Page : public QWidget {
  public:
    Page(std::FILE* told, QWidget* parent) : QWidget(parent), told_(told) {
        setAttribute(Qt::WA_OpaquePaintEvent);
        setFixedSize(480, 540);
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter(this).fillRect(rect(), Qt::darkGray);
        if (told_ == nullptr) return;
        std::fputs("First frame\n", told_);
        std::fclose(told_);
        told_ = nullptr;
    }

  private:
    std::FILE* told_;
};

}  // namespace

int main(int count, char** words) {
    QApplication application(count, words);
    if (count != 2) return 2;
    QMainWindow window;
    for (const char* title : {"File", "Publish", "Edit", "View"})
        window.menuBar()->addMenu(title);
    window.setCentralWidget(new Page(std::fopen(words[1], "a"), &window));
    window.show();
    return QApplication::exec();
}
