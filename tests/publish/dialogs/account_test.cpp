#include <gmock/gmock.h>

#include "publish/dialogs/account_choices.h"
#include "publish/dialogs/current_accounts.h"

namespace orma {
namespace {

using testing::ElementsAre;

auto HasNames(auto... names) {
    return ElementsAre(testing::Field(&AccountChoice::name, Text(names))...);
}

FtpDestination Ftp(const Text& name, const Text& server, std::uint32_t security = 0) {
    return {server, u"u-" + name, u"p-" + name, u"f-" + name, 1, name, security};
}

TEST(AccountChoicesTest, LinesEndAtTheFirstEmptyNameAndSkipWhatIsNoAccount) {
    SettingsRecord settings;
    EXPECT_FALSE(FtpChoices(settings).selected);
    settings.Ftp[0] = Ftp(u"day", u"a");
    settings.Ftp[1] = Ftp(u"unused", u"");
    settings.Ftp[2] = Ftp(u"night", u"b:2121");
    settings.Ftp[4] = Ftp(u"behind the gap", u"c");
    settings.CurrentFtpName = u"night";
    const AccountChoices ftp = FtpChoices(settings);
    EXPECT_THAT(ftp.lines, HasNames(u"day", u"night"));
    EXPECT_EQ(ftp.selected, 1U);
    EXPECT_EQ(ftp.EntryAt(1), 2U);
    EXPECT_FALSE(ftp.EntryAt(2));

    settings.Smtp[0].Server = u"mail.a";  // lends its name
    settings.Smtp[1].Name = u"second";
    settings.Smtp[3].Name = u"behind the gap";
    settings.CurrentSmtpName = u"Empty";  // a placeholder is no account
    const AccountChoices smtp = SmtpChoices(settings);
    EXPECT_THAT(smtp.lines, HasNames(u"mail.a", u"second", u"Empty", u"Empty", u"Empty"));
    EXPECT_FALSE(smtp.selected);
    EXPECT_FALSE(smtp.EntryAt(2));
}

TEST(CurrentAccountsTest, ProtectionThatAnEntryAsksForIsNotLostByAForeignName) {
    struct Case {
        Text server, name;
        TransportSecurity expected;
    };
    SettingsRecord settings;
    settings.Ftp[0] = Ftp(u"open", u"plain");
    settings.Ftp[1] = Ftp(u"safe", u"secret", 2);
    settings.Ftp[2] = Ftp(u"odd", u"future", 7);
    settings.Ftp[3] = Ftp(u"both", u"both");
    settings.Ftp[4] = Ftp(u"both safe", u"both:2121", 1);
    for (const Case& c : {Case{u"plain", u"open", TransportSecurity::kNone},
                          Case{u"secret", u"open", TransportSecurity::kImplicit},
                          Case{u"secret", u"", TransportSecurity::kImplicit},
                          Case{u"plain", u"safe", TransportSecurity::kImplicit},
                          Case{u"future", u"odd", TransportSecurity::kUpgrade},
                          Case{u"SECRET:990", u"gone", TransportSecurity::kImplicit},
                          Case{u"both:21", u"gone", TransportSecurity::kUpgrade},
                          Case{u"unknown", u"gone", TransportSecurity::kNone}}) {
        settings.FtpServer = c.server;
        settings.CurrentFtpName = c.name;
        EXPECT_EQ(CurrentFtpAccount(settings).security, c.expected)
            << ToUtf8(c.server) << " " << ToUtf8(c.name);
        EXPECT_EQ(CurrentFtpAccount(settings).server, c.server);
    }
    UseFtpEntry(settings, 1);
    settings.FtpServer.clear();
    EXPECT_EQ(CurrentFtpAccount(settings).server, u"secret");
    EXPECT_EQ(CurrentFtpAccount(settings).password, u"p-safe");
    settings.CurrentFtpName = u"gone";
    EXPECT_EQ(CurrentFtpAccount(settings).server, u"");
}

TEST(CurrentAccountsTest, TheNameInUseDecidesTheMailAccountElseTheSettingsInUse) {
    SettingsRecord settings;
    settings.Smtp[0] = {u"first", u"u0", u"p0", 0, u"", 2525, 0};
    settings.Smtp[1] = {u"second", u"u1", u"p1", 1, u"desk", 465, 2};
    settings.SmtpServer = u"first";
    settings.SmtpUser = u"mine";
    EXPECT_EQ(CurrentSmtpAccount(settings).server, u"first");
    EXPECT_EQ(CurrentSmtpAccount(settings).user, u"mine");
    EXPECT_EQ(CurrentSmtpAccount(settings).port, 2525);
    settings.CurrentSmtpName = u"desk";
    EXPECT_EQ(CurrentSmtpAccount(settings).server, u"second");
    EXPECT_TRUE(CurrentSmtpAccount(settings).authenticate);
    settings.Smtp[1].Port = 0;
    EXPECT_EQ(CurrentSmtpAccount(settings).port, 25);
    settings.CurrentSmtpName = u"gone";
    settings.SmtpServer = u"Second";
    EXPECT_EQ(CurrentSmtpAccount(settings).security, TransportSecurity::kImplicit);
}

TEST(CurrentAccountsTest, AccountsThatShareTheNameOfTheirServerAreKeptApart) {
    SettingsRecord settings;
    settings.Smtp[0] = {u"mx", u"", u"", 0, u"", 25, 0};
    settings.Smtp[1] = {u"mx", u"tim", u"p1", 1, u"", 587, 1};
    settings.Smtp[2] = {u"mx", u"tim", u"p2", 1, u"", 465, 2};
    for (std::size_t i = 0; i < 3; ++i) {
        UseSmtpEntry(settings, i);
        const SmtpAccount account = CurrentSmtpAccount(settings);
        EXPECT_EQ(account.password, settings.Smtp[i].Password);
        EXPECT_EQ(account.port, static_cast<int>(settings.Smtp[i].Port));
        EXPECT_EQ(static_cast<std::uint32_t>(account.security), settings.Smtp[i].Security);
    }
}

}  // namespace
}  // namespace orma
