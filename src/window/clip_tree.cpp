#include "window/clip_tree.h"

#include <QApplication>
#include <QHeaderView>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <QToolTip>
#include <algorithm>

#include "window/dialogs/qt_text.h"
#include "window/qt_colour.h"
#include "window/qt_font.h"

namespace orma {
namespace {

/// So many percent of `upper` over `lower`.
QString Mixed(Colour lower, Colour upper, int percent) {
    const auto part = [&](std::uint8_t a, std::uint8_t b) { return a + (b - a) * percent / 100; };
    return QColor(part(lower.red, upper.red), part(lower.green, upper.green),
                  part(lower.blue, upper.blue))
        .name();
}

}  // namespace

/// Draws cells by the window's ink, so that letters and the cells of digits are the same as
/// everywhere, and edits the titles.
class ClipTree::Delegate : public QStyledItemDelegate {
  public:
    explicit Delegate(ClipTree& tree) : QStyledItemDelegate(&tree), tree_(tree) {}

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override {
        const ClipListLook& look = tree_.look_;
        const QRect rect = option.rect;
        if (rect.isEmpty()) return;
        const bool marked = index.row() == tree_.currentIndex().row();
        Colour ground = look.colours.textBackground;
        Colour letters = look.colours.text;
        if (marked) std::swap(ground, letters);
        Picture cell{rect.width(), rect.height(), {}};
        cell.pixels.assign(
            static_cast<std::size_t>(cell.width) * static_cast<std::size_t>(cell.height),
            PixelOf(ground));
        const Font& font = FontOf(index);
        const Text text = Shown(index, rect.width());
        const int top = (cell.height - tree_.ink_.Measure(text, font).height) / 2;
        tree_.ink_.DrawText(cell, cell.Bounds(), {look.inset, top}, text, font, letters);
        for (Pixel& pixel : cell.pixels)
            pixel |= 0xFF000000U;
        painter->drawImage(
            rect.topLeft(),
            QImage(reinterpret_cast<const uchar*>(cell.pixels.data()), cell.width, cell.height,
                   cell.width * static_cast<qsizetype>(sizeof(Pixel)), QImage::Format_RGB32));
    }

    [[nodiscard]] QSize sizeHint(const QStyleOptionViewItem& /*option*/,
                                 const QModelIndex& /*index*/) const override {
        return {0, tree_.look_.rowHeight};
    }

    /// What does not fit can be read all the same.
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override {
        if (event->type() != QEvent::ToolTip) return false;
        const Text whole = TextOf(index);
        if (index.isValid() && Shown(index, option.rect.width()) != whole)
            QToolTip::showText(event->globalPos(), ToQt(whole), view);
        else
            QToolTip::hideText();
        return true;
    }

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                          const QModelIndex& /*index*/) const override {
        auto* const editor = new QLineEdit(parent);
        editor->setFrame(false);
        editor->setFont(QtFontOf(tree_.names_));
        editor->setAccessibleName(QStringLiteral("Title of the clip"));
        return editor;
    }

    /// A title may be longer than all that are there.
    void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option,
                              const QModelIndex& /*index*/) const override {
        const int right = tree_.viewport()->width();
        const int width = std::max(option.rect.width(), right / 2);
        editor->setGeometry(option.rect.x(), option.rect.y(),
                            std::min(width, right - option.rect.x()), option.rect.height());
    }

    void setModelData(QWidget* editor, QAbstractItemModel* /*model*/,
                      const QModelIndex& /*index*/) const override {
        tree_.typedTitle_ = FromQt(static_cast<QLineEdit*>(editor)->text());
        tree_.Tell(ListNotification::kTitleTyped);
    }

  protected:
    /// The menu bar opens without taking the keyboard away, and its commands may replace the clips.
    bool eventFilter(QObject* editor, QEvent* event) override {
        if (event->type() == QEvent::FocusOut) {
            const QWidget* const popup = QApplication::activePopupWidget();
            if (popup != nullptr && popup->parent() != editor) tree_.EndEditing();
        }
        return QStyledItemDelegate::eventFilter(editor, event);
    }

  private:
    [[nodiscard]] static Text TextOf(const QModelIndex& index) {
        return FromQt(index.data().toString());
    }
    [[nodiscard]] const Font& FontOf(const QModelIndex& index) const {
        return index.column() == 0 ? tree_.names_ : tree_.texts_;
    }
    [[nodiscard]] Text Shown(const QModelIndex& index, int width) const {
        const Font& font = FontOf(index);
        const int room = width - tree_.look_.inset;
        Text text = TextOf(index);
        if (tree_.ink_.Measure(text, font).width <= room) return text;
        while (!text.empty() && tree_.ink_.Measure(text + u"\u2026", font).width > room)
            text.pop_back();
        return text + u"\u2026";
    }

    ClipTree& tree_;
};

ClipTree::ClipTree(QWidget& parent, Ink& ink, const ClipListLook& look,
                   std::function<bool(std::int32_t row)> mayEdit,
                   std::function<void(ListNotification)> tell)
    : QTreeWidget(&parent),
      ink_(ink),
      look_(look),
      mayEdit_(std::move(mayEdit)),
      tell_(std::move(tell)) {
    setGeometry(look.place.x, look.place.y, look.place.w, look.place.h);
    setAccessibleName(QStringLiteral("Clips"));
    setAccessibleDescription(QStringLiteral("The clips in the order in which they are heard"));
    setItemDelegate(new Delegate(*this));
    setRootIsDecorated(false);
    setIndentation(0);
    setUniformRowHeights(true);
    setItemsExpandable(false);
    setEditTriggers(EditKeyPressed | SelectedClicked);
    setHeaderHidden(!look.header);
    header()->setSectionResizeMode(QHeaderView::Fixed);
    header()->setStretchLastSection(false);
    header()->setMinimumSectionSize(1);
    header()->setSectionsMovable(false);
    Style();
    connect(this, &QTreeWidget::currentItemChanged,
            [this](const QTreeWidgetItem* now, const QTreeWidgetItem* before) {
                if (now != nullptr && now != before) Tell(ListNotification::kSelected);
            });
}

void ClipTree::Style() {
    const SkinColours& colours = look_.colours;
    const auto tone = [&](int percent) {
        return Mixed(colours.textBackground, colours.text, percent);
    };
    setFrameShape(QFrame::NoFrame);
    header()->setFont(QtFontOf(texts_));  // counts when it is there before the style is
    setStyleSheet(
        QStringLiteral(
            "QTreeView { background: %1; border: none; outline: none; }"
            "QTreeView::item { border: none; padding: 0; }"
            "QLineEdit { background: %1; color: %2; border: 1px solid %3; padding: 0 %4px;"
            " selection-background-color: %2; selection-color: %1; }"
            "QHeaderView { background: %1; }"
            "QHeaderView::section { background: %1; color: %5; border: none;"
            " border-bottom: %11px solid %6; padding: 0 0 0 %7px; height: %8px; }"
            "QScrollBar { background: transparent; border: none; margin: 0; }"
            "QScrollBar:vertical { width: %9px; } QScrollBar:horizontal { height: %9px; }"
            "QScrollBar::handle { background: %6; border-radius: %10px; margin: 1px; }"
            "QScrollBar::handle:vertical { min-height: %8px; }"
            "QScrollBar::handle:horizontal { min-width: %8px; }"
            "QScrollBar::add-line, QScrollBar::sub-line { width: 0; height: 0; }"
            "QScrollBar::add-page, QScrollBar::sub-page { background: none; }"
            "QAbstractScrollArea::corner { background: %1; border: none; }")
            .arg(QtColour(colours.textBackground).name(), QtColour(colours.text).name(),
                 QtColour(colours.waveformEditCut).name())
            .arg(std::max(look_.inset - 1, 0))
            .arg(tone(60), tone(30))
            .arg(look_.inset)
            .arg(look_.rowHeight - look_.hairline)
            .arg(look_.scrollBar)
            .arg((look_.scrollBar - 2) / 2)
            .arg(look_.hairline));
}

void ClipTree::Tell(ListNotification news) {
    if (!silent_) tell_(news);
}

void ClipTree::Show(const ClipListContent& content) {
    EndDrag();
    const bool before = std::exchange(silent_, true);
    columns_ = content.columns;
    clips_ = static_cast<int>(content.clips);
    names_ = content.names;
    if (std::exchange(texts_, content.texts) != content.texts) Style();
    setColumnCount(static_cast<int>(columns_.size()));
    QStringList titles;
    for (const ClipListColumn& column : columns_)
        titles << ToQt(column.title);
    setHeaderLabels(titles);
    // Rows that stay are changed in place: what is scrolled to, and an editor, stay too.
    const auto count = static_cast<int>(content.rows.size());
    while (topLevelItemCount() > count)
        delete takeTopLevelItem(topLevelItemCount() - 1);
    for (int row = 0; row < count; ++row) {
        if (row == topLevelItemCount()) addTopLevelItem(new QTreeWidgetItem());
        QTreeWidgetItem& item = *topLevelItem(row);
        const auto& cells = content.rows[static_cast<std::size_t>(row)];
        for (int column = 0; column < columnCount(); ++column) {
            const auto place = static_cast<std::size_t>(column);
            item.setText(column, place < cells.size() ? ToQt(cells[place]) : QString());
        }
        const Qt::ItemFlags flags = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
        item.setFlags(IsClip(row) ? flags | Qt::ItemIsEditable : flags);
    }
    silent_ = before;
    Fit();
    Mark(content.marked);
    if (state() != EditingState) setFocus();
}

void ClipTree::Mark(std::int32_t row) {
    const bool before = std::exchange(silent_, true);
    if (row < 0 || row >= topLevelItemCount()) {
        setCurrentIndex({});
    } else {
        setCurrentItem(topLevelItem(row));
        scrollToItem(topLevelItem(row));
    }
    silent_ = before;
}

void ClipTree::Fit() {
    int others = 0;
    for (const ClipListColumn& column : columns_)
        if (!column.takesRest) others += column.width;
    for (std::size_t i = 0; i < columns_.size(); ++i) {
        const ClipListColumn& column = columns_[i];
        const int rest = viewport()->width() - others;
        header()->resizeSection(static_cast<int>(i),
                                column.takesRest ? std::max(column.width, rest) : column.width);
    }
}

void ClipTree::resizeEvent(QResizeEvent* event) {
    QTreeWidget::resizeEvent(event);
    Fit();  // a scroll bar has come or gone
    if (currentIndex().isValid()) scrollTo(currentIndex());
}

bool ClipTree::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    const bool wanted = trigger == AllEditTriggers || (editTriggers() & trigger) != 0;
    if (!wanted) return QTreeWidget::edit(index, trigger, event);
    if (!IsClip(index.row()) || (trigger == SelectedClicked && index.column() != 0)) return false;
    if (!mayEdit_(index.row())) return false;
    return QTreeWidget::edit(index.siblingAtColumn(0), trigger, event);
}

void ClipTree::EndEditing() {
    if (state() != EditingState) return;
    for (auto* const editor : viewport()->findChildren<QLineEdit*>()) {
        if (editor->isHidden()) continue;  // one that is closed already
        commitData(editor);
        closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

// One row is always selected whole, whatever keys are held.
QItemSelectionModel::SelectionFlags ClipTree::selectionCommand(const QModelIndex& index,
                                                               const QEvent* /*event*/) const {
    if (!index.isValid()) return QItemSelectionModel::NoUpdate;
    return QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows;
}

void ClipTree::drawRow(QPainter* painter, const QStyleOptionViewItem& option,
                       const QModelIndex& index) const {
    const bool marked = index.row() == currentIndex().row();
    const QRect row(0, option.rect.y(), viewport()->width(), option.rect.height());
    painter->fillRect(row, QtColour(marked ? look_.colours.text : look_.colours.textBackground));
    const bool clip = IsClip(index.row());
    for (int column = 0; column < (clip ? columnCount() : 2); ++column) {
        QStyleOptionViewItem cell = option;
        cell.rect =
            QRect(columnViewportPosition(column), row.y(), columnWidth(column), row.height());
        if (!clip && column == 1) cell.rect = TotalRect(cell.rect, index.siblingAtColumn(1));
        if (cell.rect.intersects(row))
            itemDelegate()->paint(painter, cell, index.siblingAtColumn(column));
    }
    if (clip || marked) return;
    painter->fillRect(row.x() + look_.inset, row.y(), row.width() - 2 * look_.inset, look_.hairline,
                      QColor(Mixed(look_.colours.textBackground, look_.colours.text, 30)));
}

QRect ClipTree::TotalRect(const QRect& cell, const QModelIndex& index) const {
    const Text text = FromQt(index.data().toString());
    const int needed = ink_.Measure(text, texts_).width + 2 * look_.inset;
    const int left = std::min(cell.left(), viewport()->width() - needed);
    return {left, cell.top(), viewport()->width() - left, cell.height()};
}

void ClipTree::paintEvent(QPaintEvent* event) {
    QTreeWidget::paintEvent(event);
    if (gap_ < 0) return;
    const QRect above = visualItemRect(topLevelItem(std::max(gap_ - 1, 0)));
    const int y = gap_ == 0 ? above.top() : above.bottom() + 1;
    const int thickness = std::max(look_.rowHeight / 8, 2);
    QPainter painter(viewport());
    painter.fillRect(0, std::max(y - thickness / 2, 0), viewport()->width(), thickness,
                     QtColour(look_.colours.waveformEditCut));
}

void ClipTree::keyPressEvent(QKeyEvent* event) {
    if (state() == EditingState) return;  // what the editor leaves over means nothing elsewhere
    const Qt::KeyboardModifiers held = event->modifiers() & ~Qt::KeypadModifier;
    const int key = event->key();
    if (gap_ >= 0 && key == Qt::Key_Escape) return EndDrag();
    const bool vertical = key == Qt::Key_Up || key == Qt::Key_Down;
    if (vertical && (held == Qt::ControlModifier || held == Qt::AltModifier)) {
        return Tell(key == Qt::Key_Up ? ListNotification::kMoveUp : ListNotification::kMoveDown);
    }
    const bool starts = key == Qt::Key_Return || key == Qt::Key_Enter || key == Qt::Key_Space;
    if (starts && held == Qt::ShiftModifier) return Tell(ListNotification::kPlayAlone);
    constexpr int kOwn[] = {Qt::Key_Up,       Qt::Key_Down,  Qt::Key_PageUp,
                            Qt::Key_PageDown, Qt::Key_Home,  Qt::Key_End,
                            Qt::Key_Left,     Qt::Key_Right, Qt::Key_F2};
    if (held == Qt::NoModifier && std::ranges::count(kOwn, key) != 0)
        QTreeWidget::keyPressEvent(event);
    else
        event->ignore();
}

void ClipTree::mousePressEvent(QMouseEvent* event) {
    QTreeWidget::mousePressEvent(event);
    // What it told may have led to another mark.
    if (currentIndex().isValid())
        selectionModel()->select(currentIndex(), selectionCommand(currentIndex(), nullptr));
    const QPoint at = event->position().toPoint();
    const int row = indexAt(at).row();
    pressed_.reset();
    if (event->button() == Qt::LeftButton && IsClip(row) && row == MarkedRow()) pressed_ = at;
}

void ClipTree::mouseMoveEvent(QMouseEvent* event) {
    if (!pressed_ || (event->buttons() & Qt::LeftButton) == 0) return;
    const QPoint at = event->position().toPoint();
    const int distance = (at - *pressed_).manhattanLength();
    if (gap_ < 0 && distance < QApplication::startDragDistance()) return;
    QScrollBar& bar = *verticalScrollBar();
    if (at.y() < 0) bar.setValue(bar.value() - bar.singleStep());
    if (at.y() >= viewport()->height()) bar.setValue(bar.value() + bar.singleStep());
    gap_ = GapAt(at.y());
    viewport()->update();
}

void ClipTree::mouseReleaseEvent(QMouseEvent* event) {
    const int gap = gap_;
    EndDrag();
    if (gap < 0) return QTreeWidget::mouseReleaseEvent(event);
    setState(NoState);
    const int from = MarkedRow();
    dropRow_ = gap > from ? gap - 1 : gap;
    if (dropRow_ != from) Tell(ListNotification::kDragged);
}

int ClipTree::GapAt(int y) const {
    const int top = visualItemRect(topLevelItem(0)).top();
    const int height = std::max(look_.rowHeight, 1);
    return std::clamp((y - top + height / 2) / height, 0, clips_);
}

void ClipTree::EndDrag() {
    pressed_.reset();
    if (std::exchange(gap_, -1) >= 0) viewport()->update();
}

/// There is nothing beside the page to go to: Tab is a key like any other.
bool ClipTree::focusNextPrevChild(bool /*next*/) {
    return false;
}

}  // namespace orma
