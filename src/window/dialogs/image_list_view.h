#pragma once

#include <QHash>
#include <QListWidget>
#include <QTimer>
#include <functional>

#include "publish/dialogs/image_list.h"

namespace orma {

/// The list box of a publish dialog: each image with a small picture, its name and its size. Files
/// can be dropped on it. Pictures appear one after the other, so that the dialog opens at once
/// whatever is in the list.
class ImageListView : public QListWidget {
  public:
    ImageListView();

    void ShowImages(const std::vector<ImageList::Image>& images);

    /// The marked line; -1 for none.
    [[nodiscard]] int Marked() const;

    std::function<void(const QStringList& paths)> onDropped;  // files, in their order
    std::function<void()> onDelete;                           // the Delete key

  protected:
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragMoveEvent(QDragMoveEvent* event) override;
    void dropEvent(QDropEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] QIcon IconOf(const QString& path) const;
    void ReadNext();

    QHash<QString, QIcon> pictures_;  // a null icon: tried in vain
    QTimer reading_;
};

}  // namespace orma
