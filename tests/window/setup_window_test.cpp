// The window of the set-up program, on a display in memory.

#include "window/setup/setup_window.h"

#include <QAbstractButton>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDoubleSpinBox>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QTimer>

#include <gtest/gtest.h>

#include "support/fake_ftp.h"
#include "support/mail_desk.h"
#include "window/dialogs/qt_text.h"

namespace orma::test {
namespace {

struct SetupWindowTest : testing::Test {
    SetupWindowTest() {
        // Whichever test told the application to end: boxes wait again.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QApplication::exec();
    }

    MailDesk desk;
    FakeFtp ftp;
    NetworkPorts network{ftp, desk.tcp, desk.tls, desk.hash, desk.outbox};
    bool editorOpen = false;
    std::optional<SetupWindow> window;

    void Open() {
        window.emplace(SetupServices{
            .files = desk.services,
            .network = network,
            .programFolder = desk.folder.Path(),
            .devices = {.inputs = [] { return QStringList{QStringLiteral("Desk microphone")}; },
                        .outputs = [] { return QStringList(); },
                        .equalizerSets = {}},
            .isEditorOpen = [this] { return editorOpen; }});
        window->show();
    }

    void GoTo(const char* page) {
        auto& pages = *window->findChild<QListWidget*>(QStringLiteral("pages"));
        for (int i = 0; i < pages.count(); ++i)
            if (pages.item(i)->text().startsWith(QLatin1String(page))) pages.setCurrentRow(i);
    }

    /// The visible field, list or button of that name.
    template <class Widget>
    Widget& At(const char* name) {
        for (Widget* widget : window->findChildren<Widget*>()) {
            QString text = widget->accessibleName();
            if (const auto* button = qobject_cast<QAbstractButton*>(widget);
                button != nullptr && text.isEmpty())
                text = button->text();
            if (widget->isVisible() && text == QString::fromUtf8(name)) return *widget;
        }
        throw std::runtime_error(std::string("nothing is named ") + name);
    }

    void Type(const char* name, const char* text) {
        auto& line = At<QLineEdit>(name);
        line.setText(QString::fromUtf8(text));
        Q_EMIT line.textEdited(line.text());
    }

    void Click(const char* name) { At<QAbstractButton>(name).click(); }

    /// Presses a button of the box that comes up next.
    void Answer(const char* button) {
        QTimer::singleShot(0, qApp, [this, text = QString::fromUtf8(button)] {
            auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
            ASSERT_NE(box, nullptr);
            asked = box->text();
            for (QAbstractButton* one : box->buttons())
                if (one->text().remove(QLatin1Char('&')) == text) one->click();
        });
    }

    [[nodiscard]] bool Tells(const char* words) {
        for (const QLabel* label : window->findChildren<QLabel*>())
            if (label->isVisible() && label->text().contains(QString::fromUtf8(words))) return true;
        return false;
    }

    SettingsRecord Stored() {
        SettingsRecord record;
        SettingsStore store(desk.services, desk.folder.Path(), record);
        (void)store.LoadConfiguration();
        return record;
    }

    QString asked;
};

TEST_F(SetupWindowTest, SavesWhatWasTypedAndReadsItAgain) {
    Open();
    At<QComboBox>("Microphone").setCurrentIndex(1);
    Q_EMIT At<QComboBox>("Microphone").activated(1);
    GoTo("Input");
    Type("Name", "voice");
    GoTo("Publishing");
    Type("Country", "DE");
    GoTo("Mail");
    Click("Add an account");
    Type("Server", "mail.example");
    At<QDoubleSpinBox>("Port").setValue(587);
    Click("Apply");
    EXPECT_TRUE(Tells("Saved."));
    EXPECT_FALSE(At<QAbstractButton>("Apply").isEnabled());

    const SettingsRecord stored = Stored();
    EXPECT_EQ(stored.AudioInputDevice, u"Desk microphone");
    EXPECT_EQ(stored.Preset[0].name, u"voice");
    EXPECT_EQ(stored.OriginatorCountry, 0x20204544U);
    EXPECT_EQ(stored.Smtp[0].Server, u"mail.example");
    EXPECT_EQ(stored.Smtp[0].Port, 587U);

    Open();
    GoTo("Publishing");
    EXPECT_EQ(At<QLineEdit>("Country").text(), "DE");
    GoTo("Mail");
    EXPECT_EQ(At<QDoubleSpinBox>("Port").value(), 587);
    EXPECT_FALSE(window->Document().IsChanged());
}

TEST_F(SetupWindowTest, CancelLeavesTheFileAndClosingAsks) {
    Open();
    EXPECT_TRUE(window->Apply());  // the first file
    const Bytes before = ReadFileBytes(desk.folder.Path(u"OrmaIni.sup"));
    Type("Current project", "other");
    Answer("Go on editing");
    window->close();
    EXPECT_EQ(asked, "Save the changes?");
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(At<QLineEdit>("Current project").text(), "other");
    Click("Cancel");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(ReadFileBytes(desk.folder.Path(u"OrmaIni.sup")), before);
}

TEST_F(SetupWindowTest, SavesNothingThatIsWrongAndSaysWhere) {
    Open();
    GoTo("FTP");
    Click("Add an account");
    Type("Name", "News");
    EXPECT_FALSE(Tells("Type the server's name."));  // it was not the turn of that field yet
    GoTo("Interface");
    Click("Save");
    EXPECT_TRUE(window->isVisible());
    EXPECT_TRUE(Tells("Type the server's name."));
    EXPECT_EQ(window->focusWidget(), &At<QLineEdit>("Server"));
    EXPECT_FALSE(desk.storage.Exists(desk.folder.Path(u"OrmaIni.sup")));
    Type("Server", "ftp.example");
    EXPECT_FALSE(Tells("Type the server's name."));
    Click("Save");
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Stored().FtpServer, u"ftp.example");
}

TEST_F(SetupWindowTest, TheEditorsStartAsksWhatBecomesOfChanges) {
    Open();
    Type("Current project", "other");
    Answer("Go on editing");
    window->CloseOnRequest();
    EXPECT_TRUE(asked.contains("Orma Edit has started"));
    EXPECT_TRUE(window->isVisible());
    Answer("Save");
    window->CloseOnRequest();
    EXPECT_FALSE(window->isVisible());
    EXPECT_EQ(Stored().CurrentProjectName, u"other");
    Open();
    window->CloseOnRequest();
    EXPECT_FALSE(window->isVisible()) << "nothing to lose, nothing to ask";
}

TEST_F(SetupWindowTest, TheEndOfTheSessionAsksWaitsALittleAndLosesNothing) {
    Open();
    EXPECT_TRUE(window->EndOnRequest(1)) << "nothing to lose, nothing to ask";
    Type("Current project", "first");
    Answer("Go on editing");
    EXPECT_FALSE(window->EndOnRequest());
    Answer("Don't save");
    EXPECT_TRUE(window->EndOnRequest());
    EXPECT_NE(Stored().CurrentProjectName, u"first");

    Type("Current project", "second");
    EXPECT_TRUE(window->EndOnRequest(1)) << "nobody answers";
    EXPECT_EQ(Stored().CurrentProjectName, u"second");

    Type("Current project", "third");
    QDialog open(&*window);
    open.setModal(true);
    open.show();
    EXPECT_TRUE(window->EndOnRequest()) << "behind a dialog it does not ask";
    EXPECT_EQ(Stored().CurrentProjectName, u"third");
}

TEST_F(SetupWindowTest, AsksBeforeItReplacesWhatAnotherProgramWrote) {
    Open();
    EXPECT_TRUE(window->Apply());
    Type("Current project", "mine");
    SettingsRecord theirs;
    SettingsStore store(desk.services, desk.folder.Path(), theirs);
    (void)store.LoadConfiguration();
    theirs.CurrentProjectName = u"theirs";
    ASSERT_TRUE(store.SaveConfiguration());
    Answer("Cancel");
    EXPECT_FALSE(window->Apply());
    EXPECT_EQ(Stored().CurrentProjectName, u"theirs");
    Answer("Replace");
    EXPECT_TRUE(window->Apply());
    EXPECT_EQ(Stored().CurrentProjectName, u"mine");
}

}  // namespace
}  // namespace orma::test
