#include "window/dialogs/dialog_style.h"

#include <QApplication>
#include <QIcon>
#include <QPainter>

#include "window/dialogs/dialog_look.h"

namespace orma {
namespace {

struct Sign {
    QColor plate;
    QColor letterColour;
    const char* letter;
    bool triangle = false;
};

/// In a square of 1 by 1.
QPolygonF Triangle() {
    return {{{0.5, 0.12}, {0.94, 0.86}, {0.06, 0.86}}};
}

QPixmap Drawn(const Sign& sign, int size) {
    QPixmap picture(size, size);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(size, size);
    painter.setBrush(sign.plate);
    if (sign.triangle) {
        painter.setPen(QPen(sign.plate, 0.1, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPolygon(Triangle());
    } else {
        painter.setPen(Qt::NoPen);
        painter.drawEllipse(QPointF(0.5, 0.5), 0.47, 0.47);
    }
    painter.resetTransform();
    QFont letters = QApplication::font();
    letters.setPixelSize(size * 6 / 10);
    letters.setWeight(QFont::DemiBold);
    painter.setFont(letters);
    painter.setPen(sign.letterColour);
    const int lower = sign.triangle ? size / 10 : 0;
    painter.drawText(QRect(0, lower, size, size), Qt::AlignCenter,
                     QString::fromLatin1(sign.letter));
    return picture;
}

QIcon IconOf(const Sign& sign) {
    QIcon icon;
    for (const int size : {16, 32, 48, 64, 96, 128})
        icon.addPixmap(Drawn(sign, size));
    return icon;
}

}  // namespace

QIcon DialogStyle::standardIcon(StandardPixmap icon, const QStyleOption* option,
                                const QWidget* widget) const {
    using namespace look;
    switch (icon) {
        case SP_MessageBoxCritical:
            return IconOf({QColor(217, 38, 28), Qt::white, "!"});
        case SP_MessageBoxWarning:
            return IconOf({kLit, kInk, "!", true});
        case SP_MessageBoxInformation:
            return IconOf({kInk, kPanelText, "i"});
        case SP_MessageBoxQuestion:
            return IconOf({kInk, kPanelText, "?"});
        default:
            return QProxyStyle::standardIcon(icon, option, widget);
    }
}

int DialogStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                           QStyleHintReturn* data) const {
    if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
    return QProxyStyle::styleHint(hint, option, widget, data);
}

}  // namespace orma
