#include "window/dialogs/shortcuts_dialog.h"

#include <QApplication>
#include <QTreeWidget>

#include <gtest/gtest.h>

namespace orma {
namespace {

/// The lines of the one list that stands over `window`, key and meaning of each.
QStringList Shown(const QWidget& window) {
    const auto dialogs = window.findChildren<QDialog*>();
    EXPECT_EQ(dialogs.size(), 1);
    if (dialogs.size() != 1) return {};
    EXPECT_TRUE(dialogs.front()->isVisible());
    EXPECT_FALSE(dialogs.front()->isModal()) << "the window works on beside it";
    const auto* const list = dialogs.front()->findChild<QTreeWidget*>();
    QStringList lines;
    for (int i = 0; i < list->topLevelItemCount(); ++i) {
        const QTreeWidgetItem* const group = list->topLevelItem(i);
        EXPECT_TRUE(group->isExpanded());
        lines += group->text(0);
        for (int k = 0; k < group->childCount(); ++k)
            lines += group->child(k)->text(0) + ": " + group->child(k)->text(1);
    }
    return lines;
}

TEST(ShortcutsDialogTest, StandsBesideTheWindowOnceAndGoesWhenItIsClosed) {
    QWidget window;
    window.show();
    ShortcutsDialog::ShowOver(&window, {{u"Record", {{u"9", u"Record"}}}});
    EXPECT_EQ(Shown(window), (QStringList{"Record", "9: Record"}));
    auto* const first = window.findChild<QDialog*>();
    ShortcutsDialog::ShowOver(first, {{u"Editor", {{u"Up, +", u"Zoom in"}, {u"8", u"Play"}}}});
    EXPECT_EQ(Shown(window), (QStringList{"Editor", "Up, +: Zoom in", "8: Play"}));
    window.findChild<QDialog*>()->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(window.findChildren<QDialog*>().isEmpty());
}

}  // namespace
}  // namespace orma
