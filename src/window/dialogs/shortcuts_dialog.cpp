#include "window/dialogs/shortcuts_dialog.h"

#include <QDialogButtonBox>
#include <QHeaderView>
#include <QScreen>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "window/dialogs/qt_text.h"

namespace orma {
namespace {

constexpr const char* kName = "shortcuts";
constexpr QSize kSize{600, 680};
constexpr int kGap = 8;  // between the window and the list beside it

}  // namespace

void ShortcutsDialog::ShowOver(QWidget* parent, const std::vector<ShortcutGroup>& groups) {
    // The command may come while the list itself is the active window.
    while (parent != nullptr && parent->objectName() == kName)
        parent = parent->parentWidget();
    if (parent != nullptr) delete parent->findChild<QDialog*>(kName, Qt::FindDirectChildrenOnly);
    auto* const dialog = new ShortcutsDialog(parent, groups);
    dialog->show();
}

ShortcutsDialog::ShortcutsDialog(QWidget* parent, const std::vector<ShortcutGroup>& groups)
    : QDialog(parent) {
    setObjectName(kName);
    setAttribute(Qt::WA_DeleteOnClose);
    setWindowTitle(QStringLiteral("Keyboard shortcuts"));
    auto* const list = new QTreeWidget(this);
    list->setAccessibleName(windowTitle());
    list->setHeaderLabels({QStringLiteral("Key"), QStringLiteral("What it does")});
    list->setRootIsDecorated(false);
    list->setItemsExpandable(false);
    for (const ShortcutGroup& group : groups) {
        auto* const heading = new QTreeWidgetItem(list, {ToQt(group.title)});
        QFont bold = heading->font(0);
        bold.setBold(true);
        heading->setFont(0, bold);
        heading->setFirstColumnSpanned(true);
        for (const Shortcut& shortcut : group.shortcuts)
            new QTreeWidgetItem(heading, {ToQt(shortcut.keys), ToQt(shortcut.does)});
    }
    list->expandAll();
    list->setWordWrap(true);
    list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* const column = new QVBoxLayout(this);
    column->addWidget(list);
    column->addWidget(buttons);
    const QRect room = screen()->availableGeometry();
    resize(kSize.boundedTo(room.size()));
    if (parent == nullptr) return;
    const QRect beside(parent->frameGeometry().topRight() + QPoint(kGap, 0), size());
    if (room.contains(beside)) move(beside.topLeft());
}

}  // namespace orma
