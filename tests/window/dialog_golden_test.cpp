// Small dialogs as pictures; see golden_test.cpp for the screens.

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QTimer>

#include <gtest/gtest.h>

#include "window/dialogs/name_dialog.h"
#include "window/dialogs/shortcuts_dialog.h"
#include "window/dialogs/text_sheet.h"
#include "window/golden.h"
#include "window/note_card.h"

namespace orma::test {
namespace {

TEST(DialogGoldenTest, Name) {
    QTimer::singleShot(0, [] {
        QWidget* const dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        ExpectLooksAsItDid("name", *dialog);
        dialog->close();
    });
    EXPECT_FALSE(AskName(u"harbour00-1"));
}

TEST(DialogGoldenTest, ShortcutsOnceBesideTheWindowWhichWorksOn) {
    QWidget window;
    window.show();
    ShortcutsDialog::ShowOver(&window, {});
    ShortcutsDialog::ShowOver(
        window.findChild<QDialog*>(),
        {{u"Record", {{u"9", u"Get ready to record; while recording, set a mark"}}},
         {u"Everywhere", {{u"Tab, Shift+Tab", u"Go to the next control"}}}});
    const auto shown = window.findChildren<QDialog*>();
    ASSERT_EQ(shown.size(), 1);
    ExpectLooksAsItDid("shortcuts", *shown[0]);
    EXPECT_FALSE(shown[0]->isModal());
    shown[0]->reject();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(window.findChildren<QDialog*>().isEmpty());
}

TEST(DialogGoldenTest, TextEditor) {
    QWidget page;
    page.resize(480, 540);
    TextSheet sheet(
        u"Harbour opened\r\n\r\nThe mayor cut the ribbon at noon. Three hundred people came, and "
        u"the first ship was late.\r\n\r\nStatement: 0:14, \u201ca great day\u201d",
        &page);
    ExpectLooksAsItDid("text-editor", page);

    QWidget empty;
    empty.resize(240, 190);
    TextSheet blank({}, &empty);
    ExpectLooksAsItDid("text-editor-empty", empty);
}

/// A card that is in nobody's way, with a path that takes more than a line.
TEST(DialogGoldenTest, Note) {
    const Note note{u"Published to a file",
                    u"/home/anna/Documents/recordings/2026/harbour/pub_harbour.wav"};
    for (const QSize size : {QSize(480, 540), QSize(240, 190)}) {
        QWidget page;
        page.resize(size);
        QWidget below(&page);
        NoteCard::ShowOver(page, {u"Before", {}});
        NoteCard::ShowOver(page, note);
        ASSERT_EQ(page.children().size(), 2) << "one card, and what else is on the page";
        ExpectLooksAsItDid("note-" + std::to_string(size.width()), page);
        QKeyEvent key(QEvent::KeyPress, Qt::Key_9, Qt::NoModifier);
        QCoreApplication::sendEvent(&page, &key);
        EXPECT_FALSE(static_cast<QWidget*>(page.children().back())->isVisible());
        EXPECT_TRUE(below.isVisible());
    }
}

}  // namespace
}  // namespace orma::test
