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

void Escape(QMessageBox& box) {
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
    QCoreApplication::sendEvent(&box, &key);
}

void Shut(QMessageBox& box) {
    box.close();
}

void Enter(QMessageBox& box) {
    QKeyEvent key(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier);
    QCoreApplication::sendEvent(&box, &key);
}

template <QMessageBox::StandardButton kButton>
void Press(QMessageBox& box) {
    box.button(kButton)->click();
}

BoxAnswer Answer(const MessageBox& box, Act act) {
    QTimer::singleShot(0, [&] {
        auto* const shown = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(shown, nullptr);
        EXPECT_EQ(shown->windowTitle(), QString::fromStdU16String(box.title));
        EXPECT_EQ(shown->text(), QString::fromStdU16String(box.text));
        act(*shown);
    });
    QtMessageBoxes boxes;
    return boxes.Show(box);
}

TEST(MessageBoxes, OnlyTheFirstButtonSaysYes) {
    const MessageBox deletion{.text = u"Delete <b>talk.opr</b> ?",
                              .title = u"Warning",
                              .icon = BoxIcon::kWarning,
                              .buttons = BoxButtons::kOkCancel,
                              .secondIsDefault = true};
    for (const Act no : {Escape, Shut, Enter, Press<QMessageBox::Cancel>})
        EXPECT_EQ(Answer(deletion, no), BoxAnswer::kCancel);
    EXPECT_EQ(Answer(deletion, Press<QMessageBox::Ok>), BoxAnswer::kOk);

    const MessageBox resume{.text = u"Resume publishing ?",
                            .title = u"Publishing interrupted!",
                            .icon = BoxIcon::kQuestion,
                            .buttons = BoxButtons::kYesNo};
    for (const Act no : {Escape, Shut, Press<QMessageBox::No>})
        EXPECT_EQ(Answer(resume, no), BoxAnswer::kNo);
    for (const Act yes : {Enter, Press<QMessageBox::Yes>})
        EXPECT_EQ(Answer(resume, yes), BoxAnswer::kYes);
    EXPECT_EQ(Answer({.text = u"", .title = u"Error"}, Escape), BoxAnswer::kOk);
}

TEST(MessageBoxes, NobodyIsToldToWaitWhereTheUserIsAsked) {
    QApplication::setOverrideCursor(Qt::WaitCursor);
    (void)Answer({.text = u"Delete?", .buttons = BoxButtons::kOkCancel}, [](QMessageBox& box) {
        EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::ArrowCursor);
        box.close();
    });
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WaitCursor);
    QApplication::restoreOverrideCursor();
}

TEST(MessageBoxes, TheEndOfTheProgramAnswersNo) {
    const MessageBox deletion{.text = u"Delete?", .buttons = BoxButtons::kOkCancel};
    EXPECT_EQ(Answer(deletion, [](QMessageBox&) { QCoreApplication::exit(0); }),
              BoxAnswer::kCancel);
    QTimer::singleShot(0, [] { QCoreApplication::quit(); });
    QCoreApplication::exec();  // from here on loops run again
}

}  // namespace
}  // namespace orma::test
