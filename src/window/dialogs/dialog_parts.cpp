#include "window/dialogs/dialog_parts.h"

#include <QDialog>
#include <QFrame>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "window/dialogs/dialog_look.h"

namespace orma {

QVBoxLayout* NewPage(QDialog& dialog) {
    auto* page = new QVBoxLayout(&dialog);
    page->setContentsMargins(kDialogMargin, kDialogMargin, kDialogMargin, kDialogMargin);
    page->setSpacing(kDialogGap);
    return page;
}

QLabel* NewLegend(const QString& text) {
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    SetColour(*label, look::kLegend);
    return label;
}

QFrame* NewHairline() {
    auto* line = new QFrame;
    line->setFrameShape(QFrame::HLine);
    line->setFrameShadow(QFrame::Plain);
    SetColour(*line, look::kHairline);
    return line;
}

void SetColour(QWidget& widget, const QColor& colour) {
    QPalette palette = widget.palette();
    palette.setColor(QPalette::WindowText, colour);
    widget.setPalette(palette);
}

void AddOkAndCancel(QDialog& dialog, QVBoxLayout& page) {
    auto* ok = new QPushButton(QStringLiteral("OK"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"));
    ok->setDefault(true);
    QObject::connect(ok, &QPushButton::clicked, &dialog, &QDialog::accept);
    QObject::connect(cancel, &QPushButton::clicked, &dialog, &QDialog::reject);
    auto* buttons = new QHBoxLayout;
    buttons->setSpacing(kDialogGap);
    buttons->addStretch(1);
    buttons->addWidget(ok);
    buttons->addWidget(cancel);
    page.addSpacing(kDialogGap / 2);
    page.addLayout(buttons);
}

}  // namespace orma
