#include <gmock/gmock.h>

#include "publish/dialogs/email_dialog.h"
#include "publish/dialogs/ftp_dialog.h"
#include "support/faulty_storage.h"
#include "support/test_files.h"

namespace orma::test {
namespace {

using testing::ElementsAre;

struct DialogsTest : testing::Test {
    DialogsTest() { settings.PublishMethod = 2; }

    EmailDialog Email(int resource, std::uint64_t audioBytes = 0) {
        return {services, *FindDialogResource(resource), u"talk", audioBytes};
    }

    Text Image(TextView name, std::size_t bytes) {
        WriteFileBytes(files.folder.Path(name), Bytes(bytes));
        return files.folder.Path(name);
    }

    void PutRecents(std::string_view text) {
        WriteFileBytes(files.folder.Path(u"emails.txt"), AsBytes(text));
    }

    std::string Recents() {
        const Bytes bytes = ReadFileBytes(files.folder.Path(u"emails.txt"));
        return {bytes.begin(), bytes.end()};
    }

    TestFiles files;
    Text folder = files.folder.Path();
    SettingsRecord settings;
    PublishChoices choices;
    DialogServices services{settings, choices, files.services, folder};
};

TEST_F(DialogsTest, EachSituationHasItsDialog) {
    // method, images, server choice, servers, images only
    const std::pair<DialogSituation, int> cases[] = {
        {{1, false, true, 9, false}, 105}, {{2, false, true, 9, false}, 107},
        {{2, true, true, 9, false}, 109},  {{1, true, true, 9, false}, 111},
        {{2, true, true, 9, true}, 119},   {{1, true, true, 9, true}, 121},
        {{0, true, true, 1, false}, 113},  {{0, true, false, 2, false}, 113},
        {{0, true, true, 2, false}, 117},  {{0, false, true, 2, false}, 115},
        {{0, false, true, 1, false}, 0},   {{0, false, false, 2, false}, 0},
        {{0, true, true, 1, true}, 123},   {{0, true, true, 2, true}, 125}};
    for (const auto& [situation, id] : cases) {
        const DialogResource* const dialog = DialogBefore(situation);
        EXPECT_EQ(dialog != nullptr ? dialog->id : 0, id);
    }
}

TEST_F(DialogsTest, TheRecipientListIsReadWhateverEndsItsLines) {
    const Text empty = u"Empty";
    PutRecents("a@b.c\r\n\r\nd\xE9@e.f\nlast@g.h");
    EXPECT_THAT(Email(107).Recipients(),
                ElementsAre(u"a@b.c", u"d\u00E9@e.f", u"last@g.h", empty, empty));
    PutRecents(std::string(300, 'x') + "\n2\n3\n4\n5\n6\n");
    EXPECT_THAT(Email(107).Recipients(), ElementsAre(Text(256, u'x'), u"2", u"3", u"4", u"5"));
    EXPECT_EQ(Email(107).Initial().recipient, Text(256, u'x'));
}

TEST_F(DialogsTest, StartPutsTheRecipientFirstWithoutListingItTwice) {
    PutRecents("1@a.b\n2@a.b\n3@a.b\n4@a.b\n5@a.b\n6@a.b\n");
    EXPECT_TRUE(Email(107).Start({.recipient = u"3@a.b"}));
    EXPECT_TRUE(Email(107).Start({.recipient = u"new@a.b"}));
    EXPECT_EQ(Recents(), "new@a.b\n3@a.b\n1@a.b\n2@a.b\n4@a.b\n5@a.b\n");
}

TEST_F(DialogsTest, ARecipientListThatCannotBeReadIsNotReplaced) {
    PutRecents("1@a.b\n");
    FaultyStorage storage;
    storage.FailAt(FaultyStorage::kRead, 1);
    RecentRecipients recents({storage, files.report}, files.folder.Path(u"emails.txt"));
    EXPECT_FALSE(recents.Store(u"new@a.b"));
    EXPECT_EQ(Recents(), "1@a.b\n");
}

TEST_F(DialogsTest, ARecipientThatIsNoAddressKeepsTheDialogOpen) {
    for (const Text wrong : {u"", u"Empty", u"a.b", u"a.b@c", u"a@b.c\r\nBcc: x@y.z"})
        EXPECT_FALSE(Email(107).Start({.recipient = wrong})) << ToUtf8(wrong);
    EXPECT_EQ(files.boxes.Texts(), std::vector<Text>(5, u"Illegal email-address"));
    EXPECT_EQ(choices.recipient, u"");
    EXPECT_FALSE(files.storage.Exists(files.folder.Path(u"emails.txt")));
    // The address counts as it will be used: cut.
    EXPECT_FALSE(Email(107).Start({.recipient = u"a@" + Text(251, u'b') + u".c"}));
    EXPECT_TRUE(Email(107).Start({.recipient = u"a@" + Text(250, u'b') + u".c"}));
    EXPECT_EQ(choices.recipient.size(), 253U);
}

TEST_F(DialogsTest, StartTakesOverWhatTheDialogHasControlsFor) {
    settings.Smtp[0] = {u"mail.a", u"ua", u"pa", 0, u"", 25, 0};
    settings.Smtp[1] = {u"mail.b", u"ub", u"pb", 1, u"b", 25, 0};
    const EmailFields fields{
        .recipient = u"a@b.c", .subject = u"one\r\ntwo", .server = 1, .keepNames = true};
    EXPECT_TRUE(Email(105).Start(fields));
    EXPECT_EQ(settings.CurrentSmtpName, u"");
    EXPECT_EQ(settings.KeepImageNames, 0);
    EXPECT_EQ(choices.subject, u"one  two");
    EXPECT_TRUE(Email(119).Start(fields));
    EXPECT_EQ(settings.SmtpServer + settings.SmtpPassword, u"mail.bpb");
    EXPECT_EQ(settings.KeepImageNames, 1);

    settings.Ftp[0] = {u"a", u"", u"", u"", 0, u"A", 0};
    settings.Ftp[1] = {u"b", u"", u"", u"news", 1, u"B", 0};
    settings.FtpServer = u"in use";
    for (const int resource : {115, 113, 125}) {  // one lacks the option, one the box
        settings.ServerChoice = resource != 115;
        FtpDialog(services, *FindDialogResource(resource)).Start({.server = 1});
        EXPECT_EQ(settings.FtpServer, resource == 125 ? u"b" : u"in use");
    }
    EXPECT_EQ(settings.FtpFolder, u"news");
}

TEST_F(DialogsTest, ImagesAreKeptBetweenDialogsMeasuredAnewAndCountedInTheSize) {
    EmailDialog first = Email(111, 1'000'000);
    EXPECT_EQ(first.InfoText(), u"Email-size will be : 1327 KB");
    EXPECT_FALSE(first.Images().Add(files.folder.Path(u"missing.jpg")));
    EXPECT_FALSE(first.Images().Attached());
    for (const TextView name : {u"a.jpg", u"b.jpg", u"c.jpg"})
        ASSERT_TRUE(first.Images().Add(Image(name, 500'000)));
    first.Images().Remove(7);
    first.Images().Remove(1);
    EXPECT_TRUE(first.Images().Attached());
    EXPECT_EQ(settings.ImageFolder, folder);

    EXPECT_EQ(files.storage.Delete(files.folder.Path(u"c.jpg")), 0U);
    EmailDialog second = Email(111, 1'000'000);
    ASSERT_EQ(choices.images.Count(), 1U);
    EXPECT_NE(files.boxes.shown.at(1).text.find(u"c.jpg"), Text::npos);
    EXPECT_EQ(second.InfoText(), u"Email-size will be : 1991 KB");  // 2000000 + 39473, >> 10
    EXPECT_EQ(EmailKilobytes(3'000'000'000), 3'983'347U);           // beyond 32 bits on the way
}

}  // namespace
}  // namespace orma::test
