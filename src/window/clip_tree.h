#pragma once

#include <QTreeWidget>
#include <functional>
#include <optional>

#include "ui/screens/clip_list_view.h"

namespace orma {

/// The widget of the clip list, in the skin's colours and with the window's own letters.
///
/// Pointer: a click marks a row, a second one on the marked name edits it, dragging moves a clip; a
/// line shows where it goes, Escape cancels. Keys: the arrows, Page up and down, Home and End mark,
/// F2 edits, Ctrl or Alt with Up and Down moves the marked clip, Shift with Return or Space plays
/// it alone. All others go on to the parent.
class ClipTree : public QTreeWidget {
  public:
    /// `parent` is the page; `ink` outlives the widget.
    ClipTree(QWidget& parent, Ink& ink, const ClipListLook& look,
             std::function<bool(std::int32_t row)> mayEdit,
             std::function<void(ListNotification)> tell);

    void Show(const ClipListContent& content);
    void Mark(std::int32_t row);
    [[nodiscard]] std::int32_t MarkedRow() const { return currentIndex().row(); }
    [[nodiscard]] const Text& TypedTitle() const { return typedTitle_; }
    [[nodiscard]] std::int32_t DropRow() const { return dropRow_; }

    /// What was typed so far counts, as with Return.
    void EndEditing();

    /// From now on nothing is told.
    void Silence() { silent_ = true; }

  protected:
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    [[nodiscard]] QItemSelectionModel::SelectionFlags selectionCommand(
        const QModelIndex& index, const QEvent* event) const override;
    void drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                 const QModelIndex& index) const override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    bool focusNextPrevChild(bool next) override;

  private:
    class Delegate;

    void Style();
    void Tell(ListNotification news);
    void Fit();
    [[nodiscard]] bool IsClip(int row) const { return row >= 0 && row < clips_; }
    [[nodiscard]] int GapAt(int y) const;

    /// Where the second cell of a row that is no clip is seen, however wide the names are.
    [[nodiscard]] QRect TotalRect(const QRect& cell, const QModelIndex& index) const;
    void EndDrag();

    Ink& ink_;
    ClipListLook look_;
    std::function<bool(std::int32_t row)> mayEdit_;
    std::function<void(ListNotification)> tell_;
    bool silent_ = false;
    int clips_ = 0;
    std::vector<ClipListColumn> columns_;
    Font names_;  // see ClipListContent
    Font texts_;
    Text typedTitle_;
    std::int32_t dropRow_ = -1;
    std::optional<QPoint> pressed_;  // on a clip, which may be dragged from there
    int gap_ = -1;                   // before which row it would be dropped; -1: none is dragged
};

}  // namespace orma
