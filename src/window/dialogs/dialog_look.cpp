#include "window/dialogs/dialog_look.h"

#include <QApplication>
#include <QFont>
#include <QIcon>
#include <QPalette>
#include <QScreen>
#include <QWidget>

#include "window/dialogs/dialog_style.h"

namespace orma {
namespace {

constexpr int kTextHeight = 14;  // pixels, as the page's texts count
constexpr int kFrame = 48;       // what a desktop's window frame takes at most

QPalette CasePalette() {
    using namespace look;
    QPalette palette(kKeyFace, kBody);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled}) {
        const bool disabled = group == QPalette::Disabled;
        const QColor text = disabled ? QColor(160, 152, 136) : kInk;
        palette.setColor(group, QPalette::WindowText, text);
        palette.setColor(group, QPalette::Text, text);
        palette.setColor(group, QPalette::ButtonText, text);
        palette.setColor(group, QPalette::Base, disabled ? kBody.lighter(103) : kKeyFace);
        palette.setColor(group, QPalette::AlternateBase, kBody);
        palette.setColor(group, QPalette::ToolTipBase, kPanel);
        palette.setColor(group, QPalette::ToolTipText, kPanelText);
        palette.setColor(group, QPalette::PlaceholderText, kLegend);
        palette.setColor(group, QPalette::Highlight, disabled ? kHairline : kSelected);
        palette.setColor(group, QPalette::HighlightedText, disabled ? kLegend : kInk);
        palette.setColor(group, QPalette::Link, QColor(176, 68, 0));
        palette.setColor(group, QPalette::LinkVisited, QColor(122, 70, 30));
    }
    return palette;
}

/// What the palette cannot say: keys are rounded, as on the page.
constexpr const char* kKeys = R"(
QPushButton {
    background: #fbf8f2; color: #211f1b; border: 1px solid #7a7161; border-radius: 14px;
    padding: 5px 16px; min-width: 56px; min-height: 16px;
}
QPushButton:hover { background: #ffffff; }
QPushButton:default { background: #211f1b; color: #fff4dc; border-color: #211f1b; }
QPushButton:default:hover { background: #3a362f; }
QPushButton:focus { border: 2px solid #ff6f0f; padding: 4px 15px; }
QPushButton:pressed { background: #ff6f0f; color: #211f1b; border-color: #b04400; }
QPushButton:disabled { background: #ece7db; color: #a09888; border-color: #c8c0ae; }
)";

/// Of the program that is linked with it; Wayland takes it from the desktop entry instead.
QIcon CarriedIcon() {
    QIcon icon;
    for (const int size : {16, 32, 48, 128})
        icon.addFile(QStringLiteral(":/icon/%1.png").arg(size));
    return icon;
}

}  // namespace

void InstallDialogLook() {
    QFont font(QStringLiteral("Inter"));
    font.setPixelSize(kTextHeight);
    font.setStyleHint(QFont::SansSerif);
    QApplication::setStyle(new DialogStyle);  // which takes it
    QApplication::setFont(font);
    QApplication::setPalette(CasePalette());
    qApp->setStyleSheet(QString::fromLatin1(kKeys));
    QApplication::setWindowIcon(CarriedIcon());
}

void FitToDisplay(QWidget& dialog) {
    const QScreen* screen = dialog.screen();
    if (screen == nullptr) return;
    const QSize frame(kFrame, kFrame);
    dialog.resize(dialog.sizeHint().boundedTo(screen->availableSize() - frame));
}

}  // namespace orma
