#include "window/dialogs/name_dialog.h"

#include <QApplication>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "window/dialogs/dialog_look.h"
#include "window/dialogs/dialog_parts.h"
#include "window/dialogs/qt_text.h"

namespace orma {

std::optional<Text> AskName(const Text& proposed) {
    constexpr int kWidth = 320;
    QDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(QStringLiteral("Orma Edit"));
    QVBoxLayout* const page = NewPage(dialog);
    auto* name = new QLineEdit(ToQt(proposed));
    name->selectAll();
    QLabel* const label = NewLegend(QStringLiteral("Type in a new name"));
    label->setBuddy(name);
    name->setAccessibleName(label->text());
    name->setMinimumWidth(kWidth);
    page->addWidget(label);
    page->addWidget(name);
    AddOkAndCancel(dialog, *page);
    FitToDisplay(dialog);
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return FromQt(name->text());
}

}  // namespace orma
