#include "platform/qt/qt_message_boxes.h"

#include <QApplication>
#include <QMessageBox>
#include <utility>

namespace orma {
namespace {

QMessageBox::Icon IconOf(BoxIcon icon) {
    switch (icon) {
        case BoxIcon::kNone:
            break;
        case BoxIcon::kError:
            return QMessageBox::Critical;
        case BoxIcon::kWarning:
            return QMessageBox::Warning;
        case BoxIcon::kInformation:
            return QMessageBox::Information;
        case BoxIcon::kQuestion:
            return QMessageBox::Question;
    }
    return QMessageBox::NoIcon;
}

struct Choice {
    QMessageBox::StandardButton button;
    BoxAnswer answer;
};

/// The first and the second button; the second one is what closing the box means.
std::pair<Choice, Choice> ChoicesOf(BoxButtons buttons) {
    constexpr Choice ok{QMessageBox::Ok, BoxAnswer::kOk};
    switch (buttons) {
        case BoxButtons::kOk:
            return {ok, ok};
        case BoxButtons::kOkCancel:
            return {ok, {QMessageBox::Cancel, BoxAnswer::kCancel}};
        case BoxButtons::kYesNo:
            return {{QMessageBox::Yes, BoxAnswer::kYes}, {QMessageBox::No, BoxAnswer::kNo}};
    }
    return {ok, ok};
}

/// A box waits for the user, whatever the operation that shows it makes the user wait for.
class Arrow {
  public:
    Arrow() {
        if (waiting_) QApplication::setOverrideCursor(Qt::ArrowCursor);
    }
    ~Arrow() {
        if (waiting_) QApplication::restoreOverrideCursor();
    }
    Arrow(const Arrow&) = delete;
    Arrow& operator=(const Arrow&) = delete;

  private:
    bool waiting_ = QApplication::overrideCursor() != nullptr;
};

}  // namespace

BoxAnswer QtMessageBoxes::Show(const MessageBox& box) {
    const auto [first, second] = ChoicesOf(box.buttons);
    QMessageBox window(IconOf(box.icon), QString::fromStdU16String(box.title),
                       QString::fromStdU16String(box.text), first.button | second.button,
                       QApplication::activeWindow());
    window.setTextFormat(Qt::PlainText);  // texts quote file names and servers
    window.setDefaultButton(box.secondIsDefault ? second.button : first.button);
    window.setEscapeButton(second.button);
    const Arrow arrow;
    return window.exec() == first.button ? first.answer : second.answer;
}

}  // namespace orma
