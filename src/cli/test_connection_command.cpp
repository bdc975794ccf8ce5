#include <stdexcept>

#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/option_dialogs.h"
#include "cli/output.h"
#include "publish/dialogs/current_accounts.h"
#include "stream/connection_test.h"

namespace orma::cli {
namespace {

bool MailServerAnswers(Application& app, const SmtpAccount& account) {
    if (TestMailLogIn(account, *app.mail) == SmtpOpenResult::kOk) return true;
    app.report.ShowError(u"No log-in at the mail server.");
    return false;
}

bool FtpAccountWorks(Application& app, const FtpAccount& account) {
    const auto [loggedIn, result] = TestFtpAccount(account, *app.ftp);
    if (result.Ok()) return true;
    if (result.code == kFtpCancelled) return false;
    if (loggedIn && (result.code == kFtpRefused || result.code == kFtpBadName))
        app.report.ShowError(u"Logged in, but not into the folder\n" + account.folder +
                             (result.reply.empty() ? Text() : u"\n" + result.reply));
    else
        app.report.ReportInternetFailure(u"InternetConnect", result.code, result.reply);
    return false;
}

/// Logs in, looks for an FTP account's folder, and leaves; why that fails goes to the boxes.
int TestDestination(const Globals& globals, const std::string& accountName) {
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    SettingsRecord& settings = app.settings;
    if (!accountName.empty()) settings.PublishMethod = 0;  // the name is that of an FTP destination
    DialogOptions options;
    options.account = accountName;
    UseAccount(options, settings);
    const bool mail = settings.PublishMethod != 0;
    const FtpAccount account = CurrentFtpAccount(settings);
    const SmtpAccount mailAccount = CurrentSmtpAccount(settings);
    if (mail && mailAccount.server.empty()) throw std::runtime_error("no mail server is in use");
    if (!mail && account.server.empty()) throw std::runtime_error("no FTP destination is in use");

    const bool reachable =
        mail ? MailServerAnswers(app, mailAccount) : FtpAccountWorks(app, account);
    Print({{"name", ToJson(mail ? settings.CurrentSmtpName : settings.CurrentFtpName)},
           {"server", ToJson(mail ? mailAccount.server : account.server)},
           {"reachable", reachable}},
          globals.json);
    return reachable ? kOk : kFailed;
}

}  // namespace

void AddTestConnectionCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto account = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand("test-connection",
                                           "Try to log in at the FTP destination or mail server in "
                                           "use; exit code 1 when that fails or "
                                           "the destination's folder is not there");
    command
        ->add_option("--account", *account, "The name of an FTP destination; else what is in use")
        ->type_name("NAME");
    command->callback([&globals, &action, account] {
        action = [&globals, account] { return TestDestination(globals, *account); };
    });
}

}  // namespace orma::cli
