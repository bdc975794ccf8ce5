#include "window/dialogs/image_list_view.h"

#include <QDragEnterEvent>
#include <QFileInfo>
#include <QKeyEvent>
#include <QLocale>
#include <QMimeData>
#include <QPainter>

#include "window/dialogs/qt_text.h"
#include "window/dialogs/thumbnail.h"

namespace orma {
namespace {

constexpr QSize kPicture{56, 42};
constexpr int kPathRole = Qt::UserRole;

/// The files that are dragged; no folders, which nobody could send.
QStringList DraggedFiles(const QMimeData& data) {
    QStringList files;
    for (const QUrl& url : data.urls()) {
        const QString path = url.toLocalFile();
        if (!path.isEmpty() && QFileInfo(path).isFile()) files.append(path);
    }
    return files;
}

/// In the middle of a box, so that names stand below each other.
QIcon Centred(const QImage& picture, QSize box) {
    QImage image(box, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.drawImage((box.width() - picture.width()) / 2, (box.height() - picture.height()) / 2,
                      picture);
    return QPixmap::fromImage(image);
}

}  // namespace

ImageListView::ImageListView() {
    setIconSize(kPicture);
    setUniformItemSizes(true);
    setTextElideMode(Qt::ElideMiddle);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollMode(ScrollPerPixel);
    setAcceptDrops(true);
    setMinimumSize(180, 2 * kPicture.height());
    reading_.setInterval(0);
    connect(&reading_, &QTimer::timeout, this, [this] { ReadNext(); });
}

void ImageListView::ShowImages(const std::vector<ImageList::Image>& images) {
    const int marked = Marked();
    clear();
    for (const ImageList::Image& image : images) {
        const QString path = PathToQt(image.path);
        const QString size = QLocale::c().formattedDataSize(static_cast<qint64>(image.bytes), 1,
                                                            QLocale::DataSizeTraditionalFormat);
        auto* line = new QListWidgetItem(IconOf(path),
                                         QFileInfo(path).fileName() + QLatin1Char('\n') + size);
        line->setData(kPathRole, path);
        line->setToolTip(path);
        addItem(line);
    }
    // The line that came up into the place of a removed one, so that several can go in a row.
    if (marked >= 0) setCurrentRow(std::min(marked, count() - 1));
    reading_.start();
}

int ImageListView::Marked() const {
    return selectedItems().isEmpty() ? -1 : currentRow();
}

QIcon ImageListView::IconOf(const QString& path) const {
    const QIcon picture = pictures_.value(path);
    const QSize box = kPicture * devicePixelRatioF();
    return picture.isNull() ? Centred(NeutralThumbnail(path, box), box) : picture;
}

void ImageListView::ReadNext() {
    const QSize box = kPicture * devicePixelRatioF();
    for (int row = 0; row < count(); ++row) {
        const QString path = item(row)->data(kPathRole).toString();
        if (pictures_.contains(path)) continue;
        const QImage picture = ReadThumbnail(path, box);
        pictures_[path] = picture.isNull() ? QIcon() : Centred(picture, box);
        for (int other = row; other < count(); ++other)
            if (item(other)->data(kPathRole).toString() == path) item(other)->setIcon(IconOf(path));
        return;
    }
    reading_.stop();
}

void ImageListView::dragEnterEvent(QDragEnterEvent* event) {
    dragMoveEvent(event);
}

void ImageListView::dragMoveEvent(QDragMoveEvent* event) {
    if (DraggedFiles(*event->mimeData()).isEmpty()) return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

void ImageListView::dropEvent(QDropEvent* event) {
    const QStringList files = DraggedFiles(*event->mimeData());
    if (files.isEmpty()) return;
    event->setDropAction(Qt::CopyAction);
    event->accept();
    // Whoever dragged waits for the answer, and a box may come.
    QTimer::singleShot(0, this, [this, files] {
        if (onDropped) onDropped(files);
    });
}

void ImageListView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Delete && onDelete)
        onDelete();
    else
        QListWidget::keyPressEvent(event);
}

void ImageListView::paintEvent(QPaintEvent* event) {
    QListWidget::paintEvent(event);
    if (count() != 0) return;
    QPainter painter(viewport());
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(viewport()->rect().adjusted(8, 8, -8, -8), Qt::AlignCenter | Qt::TextWordWrap,
                     QStringLiteral("Add images and videos, or drop them here"));
}

}  // namespace orma
