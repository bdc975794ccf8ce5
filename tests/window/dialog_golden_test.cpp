// The dialogs as pictures; see golden_test.cpp for the screens.

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QTimer>

#include <gtest/gtest.h>

#include "support/test_files.h"
#include "window/dialogs/input_options_dialog.h"
#include "window/dialogs/name_dialog.h"
#include "window/dialogs/publish_dialog_window.h"
#include "window/dialogs/qt_text.h"
#include "window/dialogs/shortcuts_dialog.h"
#include "window/dialogs/text_sheet.h"
#include "window/golden.h"
#include "window/note_card.h"

namespace orma::test {
namespace {

/// Shows the dialog without a blinking cursor and holds it against its picture.
void ExpectLooksAsItDid(const std::string& name, QWidget& dialog) {
    dialog.show();
    for (int i = 0; i < 10; ++i)
        QCoreApplication::processEvents();  // thumbnails are made one after the other
    const QImage shown = dialog.grab().toImage().convertToFormat(QImage::Format_RGB32);
    const std::string wrong = CompareWithGolden("dialogs/" + name, shown);
    EXPECT_TRUE(wrong.empty()) << wrong;
}

struct DialogGoldenTest : testing::Test {
    DialogGoldenTest() {
        settings.PublishMethod = 2;
        settings.ServerChoice = 1;
        settings.Ftp[0].Server = u"ftp.example.org";
        settings.Ftp[0].Name = u"Newsroom";
        settings.Smtp[0].Server = u"mail.example.org";
        const std::pair<const char*, QColor> pictures[] = {{"harbour.bmp", Qt::darkCyan},
                                                           {"the mayor.bmp", Qt::darkRed}};
        for (const auto& [name, colour] : pictures) {
            QImage image(320, 200, QImage::Format_RGB32);
            image.fill(colour);
            const QString path = PathToQt(files.folder.Path()) + name;
            EXPECT_TRUE(image.save(path));
            EXPECT_TRUE(choices.images.Add(files.services, PathFromQt(path)));
        }
    }

    TestFiles files;
    Text folder = files.folder.Path();
    SettingsRecord settings;
    PublishChoices choices;
    DialogServices services{settings, choices, files.services, folder};
};

TEST_F(DialogGoldenTest, PublishDialogs) {
    for (const int id : {105, 107, 109, 111, 119, 121}) {
        EmailDialog model(services, *FindDialogResource(id), u"harbour", 1'000'000);
        PublishDialogWindow window({.resource = model.Resource(),
                                    .images = model.Images(),
                                    .servers = model.Servers(),
                                    .recipients = model.Recipients(),
                                    .initial = model.Initial(),
                                    .info = [&model] { return model.InfoText(); },
                                    .start = [](const EmailFields&) { return false; }},
                                   nullptr);
        ExpectLooksAsItDid(std::to_string(id), window);
    }
    for (const int id : {113, 115, 117, 123, 125}) {
        FtpDialog model(services, *FindDialogResource(id));
        PublishDialogWindow window({.resource = model.Resource(),
                                    .images = model.Images(),
                                    .servers = model.Servers(),
                                    .recipients = {},
                                    .initial = {.server = model.Initial().server},
                                    .info = {},
                                    .start = [](const EmailFields&) { return false; }},
                                   nullptr);
        ExpectLooksAsItDid(std::to_string(id), window);
    }
}

TEST_F(DialogGoldenTest, InputOptionsNameAndShortcuts) {
    InputOptions options;
    EqualizerSet set;
    set.on = 1;
    set.name = u"Street";
    set.bands[0] = {100, -120, 7, 1};
    set.bands[2] = {3000, 45, 10, 1};
    options.sets.push_back(set);
    options.set = 0;
    options.sampleRate = 44100;
    options.gainControl = true;
    options.gainDb = 12;
    options.liveFtpAllowed = true;
    InputOptionsDialog input(options, nullptr);
    ExpectLooksAsItDid("input-options", input);

    QTimer::singleShot(0, [] {
        QWidget* const dialog = QApplication::activeModalWidget();
        ASSERT_NE(dialog, nullptr);
        ExpectLooksAsItDid("name", *dialog);
        dialog->close();
    });
    EXPECT_FALSE(AskName(u"harbour00-1"));

    QWidget window;
    window.show();
    ShortcutsDialog::ShowOver(
        &window, {{u"Record", {{u"9", u"Get ready to record; while recording, set a mark"}}},
                  {u"Everywhere", {{u"Tab, Shift+Tab", u"Go to the next control"}}}});
    ExpectLooksAsItDid("shortcuts", *window.findChild<QDialog*>());
}

TEST_F(DialogGoldenTest, TextEditor) {
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
TEST_F(DialogGoldenTest, Note) {
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
