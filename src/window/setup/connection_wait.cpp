#include "window/setup/connection_wait.h"

#include <QCoreApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "window/dialogs/dialog_parts.h"

namespace orma {

ConnectionWait::ConnectionWait(const QString& text, QWidget* parent) : QDialog(parent) {
    setWindowTitle(QStringLiteral("Test"));
    setModal(true);
    QVBoxLayout* const page = NewPage(*this);
    auto* label = new QLabel(text);
    label->setTextFormat(Qt::PlainText);
    page->addWidget(label);
    auto* cancel = new QPushButton(QStringLiteral("Cancel"));
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    page->addLayout(buttons);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
    connect(this, &QDialog::rejected, this, [this] { cancelled_ = true; });
    setMinimumWidth(320);
    show();
    (void)GoOn();  // it is drawn before anything blocks
}

bool ConnectionWait::GoOn() {
    QCoreApplication::processEvents();
    return !cancelled_;
}

}  // namespace orma
