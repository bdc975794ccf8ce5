#include "window/bitmap_action.h"

#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>

namespace orma {
namespace {

QImage Opaque(const Picture& picture) {
    QImage image(picture.width, picture.height, QImage::Format_RGB32);
    for (int y = 0; y < picture.height; ++y)
        for (int x = 0; x < picture.width; ++x)
            image.setPixel(x, y, picture.At(x, y) | 0xFF000000U);
    return image;
}

class BitmapLine : public QWidget {
  public:
    BitmapLine(const QImage& image, QAction& action, QWidget* parent)
        : QWidget(parent), image_(image), action_(action) {
        setFocusPolicy(Qt::StrongFocus);  // the menu's arrow keys then come to it
        setMouseTracking(true);
        setMinimumSize(image.size());
        setAccessibleName(action.text());
    }

  protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        QImage image = image_;
        if (underMouse() || hasFocus()) image.invertPixels();
        painter.drawImage((width() - image.width()) / 2, 0, image);
    }
    void enterEvent(QEnterEvent* event) override {
        update();
        QWidget::enterEvent(event);
    }
    void leaveEvent(QEvent* event) override {
        update();
        QWidget::leaveEvent(event);
    }
    void mouseReleaseEvent(QMouseEvent* event) override {
        if (rect().contains(event->position().toPoint())) Choose();
    }
    void keyPressEvent(QKeyEvent* event) override {
        const int key = event->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space)
            Choose();
        else
            QWidget::keyPressEvent(event);
    }

  private:
    /// As for any line: the menus close first, for the command may fill them anew.
    void Choose() {
        const QPointer<QAction> action = &action_;
        for (QWidget* above = parentWidget(); above != nullptr; above = above->parentWidget())
            if (auto* const menu = qobject_cast<QMenu*>(above)) menu->close();
        if (action) action->trigger();
    }

    QImage image_;
    QAction& action_;
};

}  // namespace

BitmapAction::BitmapAction(const Picture& picture, QObject* parent)
    : QWidgetAction(parent), image_(Opaque(picture)) {}

QWidget* BitmapAction::createWidget(QWidget* parent) {
    return new BitmapLine(image_, *this, parent);
}

}  // namespace orma
