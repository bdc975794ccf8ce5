// Boxes as they are shown, on a display in memory.

#include <QApplication>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

#include "platform/qt/qt_message_boxes.h"

namespace orma::test {
namespace {

using Act = void (*)(QMessageBox&);

template <Qt::Key kKey>
void Type(QMessageBox& box) {
    QKeyEvent key(QEvent::KeyPress, kKey, Qt::NoModifier);
    QCoreApplication::sendEvent(&box, &key);
}

template <QMessageBox::StandardButton kButton>
void Press(QMessageBox& box) {
    box.button(kButton)->click();
}

constexpr Act kEscape = Type<Qt::Key_Escape>;
constexpr Act kEnter = Type<Qt::Key_Return>;
constexpr Act kShut = [](QMessageBox& box) { box.close(); };
constexpr Act kEnd = [](QMessageBox&) { QCoreApplication::exit(0); };

/// Nobody is told to wait where the user is asked.
BoxAnswer Answer(const MessageBox& box, Act act) {
    QTimer::singleShot(0, [&] {
        auto* const shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(shown->windowTitle(), QString::fromStdU16String(box.title));
        EXPECT_EQ(shown->text(), QString::fromStdU16String(box.text));
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
        act(*shown);
    });
    QApplication::setOverrideCursor(Qt::WaitCursor);
    QtMessageBoxes boxes;
    const BoxAnswer answer = boxes.Show(box);
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QApplication::restoreOverrideCursor();
    return answer;
}

TEST(MessageBoxes, OnlyTheFirstButtonSaysYesAndTheEndOfTheProgramNo) {
    const MessageBox deletion{.text = u"Delete <b>talk.opr</b> ?",
                              .title = u"Warning",
                              .icon = BoxIcon::kWarning,
                              .buttons = BoxButtons::kOkCancel,
                              .secondIsDefault = true};
    for (const Act no : {kEscape, kShut, kEnter, Act{Press<QMessageBox::Cancel>}, kEnd})
        EXPECT_EQ(Answer(deletion, no), BoxAnswer::kCancel);
    QTimer::singleShot(0, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();  // from here on loops run again
    EXPECT_EQ(Answer(deletion, Press<QMessageBox::Ok>), BoxAnswer::kOk);

    const MessageBox resume{.text = u"Resume publishing ?",
                            .title = u"Publishing interrupted!",
                            .icon = BoxIcon::kQuestion,
                            .buttons = BoxButtons::kYesNo};
    for (const Act no : {kEscape, kShut, Act{Press<QMessageBox::No>}})
        EXPECT_EQ(Answer(resume, no), BoxAnswer::kNo);
    for (const Act yes : {kEnter, Act{Press<QMessageBox::Yes>}})
        EXPECT_EQ(Answer(resume, yes), BoxAnswer::kYes);
    EXPECT_EQ(Answer({.text = u"", .title = u"Error"}, kEscape), BoxAnswer::kOk);
}

}  // namespace
}  // namespace orma::test
