// The dialogs as pictures; see golden_test.cpp for the screens.

#include <QApplication>
#include <QDialog>
#include <QTimer>

#include <gtest/gtest.h>

#include "support/test_files.h"
#include "window/dialogs/input_options_dialog.h"
#include "window/dialogs/name_dialog.h"
#include "window/dialogs/publish_dialog_window.h"
#include "window/dialogs/qt_text.h"
#include "window/dialogs/shortcuts_dialog.h"
#include "window/golden.h"

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

}  // namespace
}  // namespace orma::test
