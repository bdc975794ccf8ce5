// The windows of the publish dialogs over their models, on a display in memory.

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDropEvent>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMimeData>
#include <QPushButton>
#include <QTimer>

#include <gtest/gtest.h>

#include "support/test_files.h"
#include "window/dialogs/publish_dialog_window.h"
#include "window/dialogs/qt_publish_dialogs.h"
#include "window/dialogs/qt_text.h"
#include "window/dialogs/thumbnail.h"
#include "window/golden.h"

namespace orma::test {
namespace {

constexpr int kMailDialogs[] = {105, 107, 109, 111, 119, 121};
constexpr int kFtpDialogs[] = {113, 115, 117, 123, 125};

struct PublishDialogsTest : testing::Test {
    PublishDialogsTest() {
        settings.PublishMethod = 2;
        settings.ServerChoice = 1;
        settings.Ftp[0].Server = u"ftp.example.org";
        settings.Ftp[0].Name = u"Newsroom";
        settings.Ftp[1].Server = u"two.example";
        settings.Ftp[1].Name = u"Two";
        settings.Smtp[0].Server = u"mail.example.org";
        settings.Smtp[1].Server = u"post.example";
        settings.Smtp[1].Name = u"Post";
    }

    void Open(int id) {
        const DialogResource& resource = *FindDialogResource(id);
        if (std::ranges::count(kMailDialogs, id) != 0)
            window.emplace(email.emplace(services, resource, u"harbour", 1'000'000), nullptr);
        else
            window.emplace(ftp.emplace(services, resource), nullptr);
        window->show();
    }

    template <typename Widget>
    Widget& Control(int id) {
        auto* const widget = window->findChild<Widget*>(QString::number(id));
        if (widget == nullptr) throw std::logic_error("no control " + std::to_string(id));
        return *widget;
    }
    void Click(int id) { Control<QPushButton>(id).click(); }
    QString Info() { return Control<QLabel>(1021).text(); }

    QString Picture(const char* name, int width, int height, const QColor& colour = Qt::red) {
        QImage image(width, height, QImage::Format_RGB32);
        image.fill(colour);
        const QString path = PathToQt(files.folder.Path()) + QLatin1String(name);
        EXPECT_TRUE(image.save(path));
        return path;
    }

    /// Shows it as it was, and by the keyboard alone every control is reached, which has a name.
    void ExpectDialog(int id) {
        SCOPED_TRACE(id);
        Open(id);
        ExpectLooksAsItDid(std::to_string(id), *window);
        QList<QWidget*> reached;
        for (QWidget* next = window->nextInFocusChain(); next != &*window;
             next = next->nextInFocusChain())
            reached.append(next);
        for (const DialogControl& control : FindDialogResource(id)->controls) {
            auto& widget = Control<QWidget>(control.id);
            EXPECT_FALSE(widget.accessibleName().isEmpty()) << control.id;
            EXPECT_TRUE(control.role == DialogRole::kInfo || reached.contains(&widget));
        }
    }

    TestFiles files;
    Text folder = files.folder.Path();
    SettingsRecord settings;
    PublishChoices choices;
    DialogServices services{settings, choices, files.services, folder};
    std::optional<EmailDialog> email;
    std::optional<FtpDialog> ftp;
    std::optional<PublishDialogWindow> window;
};

TEST_F(PublishDialogsTest, EveryDialogLooksAsItDidAndTheKeyboardReachesItsControls) {
    for (const QString& path : {Picture("harbour.bmp", 320, 200, Qt::darkCyan),
                                Picture("the mayor.bmp", 320, 200, Qt::darkRed)})
        EXPECT_TRUE(choices.images.Add(files.services, PathFromQt(path)));
    for (const int id : kMailDialogs)
        ExpectDialog(id);
    for (const int id : kFtpDialogs)
        ExpectDialog(id);
}

TEST_F(PublishDialogsTest, AMailIsStartedOnceItsRecipientIsAnAddress) {
    Open(107);
    EXPECT_EQ(Control<QComboBox>(1019).currentText(), "Empty");
    Control<QComboBox>(1020).setCurrentIndex(1);
    Click(1);
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(files.boxes.Texts(), std::vector<Text>{u"Illegal email-address"});

    Control<QComboBox>(1019).setEditText("desk@example.org");
    Control<QLineEdit>(1022).setText("The harbour");
    Click(1);
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(window->result(), QDialog::Accepted);
    EXPECT_EQ(choices.recipient, u"desk@example.org");
    EXPECT_EQ(choices.subject, u"The harbour");
    EXPECT_EQ(settings.SmtpServer, u"post.example");
}

TEST_F(PublishDialogsTest, AServerBoxOffersAccountsAndLeavesTheOneInUseWhereNoneIsSelected) {
    settings.CurrentSmtpName = u"elsewhere";
    settings.SmtpServer = u"own.example";
    Open(107);
    auto& box = Control<QComboBox>(1020);
    EXPECT_EQ(box.currentIndex(), -1);
    EXPECT_EQ(box.placeholderText(), "elsewhere");
    EXPECT_TRUE(box.model()->flags(box.model()->index(1, 0)).testFlag(Qt::ItemIsEnabled));
    EXPECT_FALSE(box.model()->flags(box.model()->index(2, 0)).testFlag(Qt::ItemIsEnabled));
    Control<QComboBox>(1019).setEditText("desk@example.org");
    Click(1);
    EXPECT_EQ(settings.SmtpServer, u"own.example");

    Open(115);
    Control<QComboBox>(1030).setCurrentIndex(1);
    Click(1);
    EXPECT_EQ(settings.FtpServer, u"two.example");
}

TEST_F(PublishDialogsTest, TheInfoLineFollowsTheImages) {
    const QString second = Picture("second.bmp", 30, 30);
    Open(109);
    const QString without = Info();
    window->AddImages({Picture("first.bmp", 300, 300), "/nowhere/to/be/found.png", second});
    EXPECT_EQ(files.boxes.shown.size(), 1U);
    EXPECT_TRUE(choices.imagesAttached);
    const QString both = Info();
    EXPECT_NE(both, without);

    Control<QCheckBox>(1027).click();
    EXPECT_EQ(Info(), without);
    EXPECT_FALSE(choices.imagesAttached);
    Control<QCheckBox>(1027).click();
    EXPECT_EQ(Info(), both);

    Control<QListWidget>(1035).setCurrentRow(0);
    Click(6);
    ASSERT_EQ(choices.images.Count(), 1U);
    EXPECT_EQ(choices.images.Images()[0].path, PathFromQt(second));
    EXPECT_NE(Info(), both);
    Click(5);
    EXPECT_EQ(choices.images.Count(), 0U);
    EXPECT_EQ(Info(), without);
    EXPECT_FALSE(Control<QPushButton>(6).isEnabled());
    EXPECT_FALSE(Control<QPushButton>(5).isEnabled());
}

TEST_F(PublishDialogsTest, FilesComeFromTheFileDialogOrAreDropped) {
    (void)Picture("first.png", 30, 30);
    const QString second = Picture("second.png", 30, 30);
    QCoreApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    settings.ImageFolder = folder;
    Open(123);
    QTimer::singleShot(0, [&] {
        auto* const dialog = qobject_cast<QFileDialog*>(QApplication::activeModalWidget());
        ASSERT_NE(dialog, nullptr);
        EXPECT_EQ(dialog->directory(), QDir(PathToQt(folder)));
        dialog->findChild<QLineEdit*>("fileNameEdit")->setText("\"first.png\" \"second.png\"");
        static_cast<QDialog*>(dialog)->accept();
    });
    Click(1026);
    EXPECT_EQ(choices.images.Count(), 2U);

    QMimeData dragged;
    dragged.setUrls({QUrl::fromLocalFile(second), QUrl::fromLocalFile(PathToQt(folder))});
    QWidget* const list = Control<QListWidget>(1035).viewport();
    QDragEnterEvent enter({5, 5}, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list, &enter);
    EXPECT_TRUE(enter.isAccepted());
    QDropEvent drop({5, 5}, Qt::CopyAction, &dragged, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(list, &drop);
    QCoreApplication::processEvents();
    ASSERT_EQ(choices.images.Count(), 3U);  // not the folder
    EXPECT_EQ(choices.images.Images()[2].path, PathFromQt(second));
}

TEST_F(PublishDialogsTest, CancelEscapeAndTheEndOfTheProgramAnswerNo) {
    using Leave = void (*)(QWidget&);
    const Leave cancel = [](QWidget& shown) { shown.findChild<QPushButton*>("2")->click(); };
    const Leave escape = [](QWidget& shown) {
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&shown, &key);
    };
    const Leave end = [](QWidget&) { QCoreApplication::exit(0); };
    QtPublishDialogs dialogs;
    for (const Leave leave : {cancel, escape, end}) {
        FtpDialog model(services, *FindDialogResource(117));
        QTimer::singleShot(0, [&] {
            QWidget* const shown = QApplication::activeModalWidget();
            ASSERT_NE(shown, nullptr);
            leave(*shown);
        });
        EXPECT_FALSE(dialogs.ShowFtpDialog(model));
    }
    EXPECT_EQ(settings.FtpServer, u"");
}

TEST_F(PublishDialogsTest, APictureIsReadSmallAndAFileThatIsNoneStaysNeutral) {
    const QSize box(56, 42);
    EXPECT_EQ(ReadThumbnail(Picture("wide.png", 600, 100), box).size(), QSize(56, 9));
    EXPECT_EQ(ReadThumbnail(Picture("tiny.png", 10, 8), box).size(), QSize(10, 8));
    EXPECT_TRUE(ReadThumbnail(Picture("huge.bmp", 6000, 5000), box).isNull());
    const Text film = files.folder.Path(u"film.mp4");
    WriteFileBytes(film, Bytes(100));
    EXPECT_TRUE(ReadThumbnail(PathToQt(film), box).isNull());
    EXPECT_NE(NeutralThumbnail("film.mp4", box), NeutralThumbnail("sheet.xyz", box));
}

}  // namespace
}  // namespace orma::test
