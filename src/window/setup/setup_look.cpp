#include "window/setup/setup_look.h"

#include <QLabel>
#include <QScrollArea>

#include "window/dialogs/dialog_look.h"
#include "window/dialogs/dialog_parts.h"

namespace orma {
namespace {

constexpr int kSmallLetters = 12;  // pixels

void Letters(QWidget& widget, int pixels, QFont::Weight weight) {
    QFont font = widget.font();
    font.setPixelSize(pixels);
    font.setWeight(weight);
    widget.setFont(font);
}

}  // namespace

QLabel* NewHeading(const QString& text) {
    auto* label = new QLabel(text);
    Letters(*label, 14, QFont::DemiBold);
    return label;
}

QLabel* NewRemark(const QString& text) {
    QLabel* const label = NewLegend(text);
    label->setWordWrap(true);
    Letters(*label, kSmallLetters, QFont::Normal);
    return label;
}

QLabel* NewFault() {
    auto* label = new QLabel;
    label->setTextFormat(Qt::PlainText);
    label->setWordWrap(true);
    Letters(*label, kSmallLetters, QFont::DemiBold);
    SetColour(*label, look::kWrong);
    label->hide();
    return label;
}

QScrollArea* Scrolling(QWidget* contents) {
    auto* area = new QScrollArea;
    area->setFrameShape(QFrame::NoFrame);
    area->setWidgetResizable(true);
    area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    area->setFocusPolicy(Qt::NoFocus);
    area->setWidget(contents);
    return area;
}

}  // namespace orma
