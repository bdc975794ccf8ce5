#include "cli/option_dialogs.h"

#include <stdexcept>

#include <gtest/gtest.h>

#include "support/test_files.h"

namespace orma::cli {
namespace {

struct OptionDialogsTest : testing::Test {
    [[nodiscard]] bool ShowEmail() {
        OptionDialogs dialogs(options, settings);
        EmailDialog dialog(services, *FindDialogResource(109), u"talk", 0);
        return dialogs.ShowEmailDialog(dialog);
    }

    test::TestFiles files;
    Text folder = files.folder.Path();
    SettingsRecord settings;
    PublishChoices choices;
    DialogServices services{settings, choices, files.services, folder};
    DialogOptions options;
};

TEST_F(OptionDialogsTest, NothingIsMailedUnaskedOrIncomplete) {
    settings.PublishMethod = 2;
    test::WriteFileBytes(files.folder.Path(u"emails.txt"), AsBytes("last@radio.org\n"));
    EXPECT_FALSE(ShowEmail()) << "nobody is written to unasked";
    settings.Recipient = u"desk@radio.org";
    EXPECT_TRUE(ShowEmail());
    EXPECT_EQ(choices.recipient, u"desk@radio.org");
    options.recipient = "news@radio";
    EXPECT_FALSE(ShowEmail());
    EXPECT_EQ(files.boxes.shown.back().text, u"Illegal email-address");
    options.recipient = "news@radio.org";
    options.subject = "h\xC3\xB6r";
    EXPECT_TRUE(ShowEmail());
    EXPECT_EQ(choices.recipient, u"news@radio.org");
    EXPECT_EQ(choices.subject, u"h\u00F6r");
    options.images = {ToUtf8(files.folder.Path(u"missing.jpg"))};
    EXPECT_FALSE(ShowEmail()) << "nothing is sent without an image that was asked for";
}

TEST_F(OptionDialogsTest, AnAccountIsChosenByItsNameInTheTableOfTheMethodOrStays) {
    settings.ServerChoice = 1;
    settings.Smtp[0].Server = u"mail";
    settings.Ftp[0].Name = u"studio";
    settings.Ftp[0].Server = u"host";
    settings.CurrentFtpName = u"gone";
    settings.FtpServer = u"mine";
    OptionDialogs dialogs(options, settings);
    FtpDialog dialog(services, *FindDialogResource(115));
    EXPECT_TRUE(dialogs.ShowFtpDialog(dialog));
    EXPECT_EQ(settings.FtpServer, u"mine") << "a destination in use that the table does not have";
    options.account = "studio";
    UseAccount(options, settings);
    EXPECT_EQ(settings.FtpServer, u"host");
    settings.PublishMethod = 2;
    EXPECT_THROW(UseAccount(options, settings), std::runtime_error);
    options.account = "mail";
    UseAccount(options, settings);
    EXPECT_EQ(settings.SmtpServer, u"mail");
}

}  // namespace
}  // namespace orma::cli
