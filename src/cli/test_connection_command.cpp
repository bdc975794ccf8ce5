#include <stdexcept>

#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/option_dialogs.h"
#include "cli/output.h"
#include "platform/curl/curl_ftp_clients.h"
#include "publish/dialogs/current_accounts.h"
#include "stream/ftp_session.h"

namespace orma::cli {
namespace {

/// Ctrl-C ends the program: nothing is under way that would have to be put in order.
class UntilAnswered : public Patience {
    [[nodiscard]] bool GoOn() override { return true; }
};

/// Logs in and out again; why that fails goes to the boxes.
int TestFtp(const Globals& globals, const std::string& accountName) {
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    app.settings.PublishMethod = 0;  // FTP destinations are what is tested
    DialogOptions options;
    options.account = accountName;
    UseAccount(options, app.settings);
    const FtpAccount account = CurrentFtpAccount(app.settings);
    if (account.server.empty()) throw std::runtime_error("no FTP destination is in use");

    CurlFtpClients clients;
    UntilAnswered patience;
    const FtpSession session({clients, app.report, patience}, account);
    Print({{"name", ToJson(app.settings.CurrentFtpName)},
           {"server", ToJson(account.server)},
           {"reachable", session.IsConnected()}},
          globals.json);
    return session.IsConnected() ? kOk : kFailed;
}

}  // namespace

void AddTestConnectionCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto account = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand(
        "test-connection", "Try to log in to an FTP destination; exit code 1 when that fails");
    command->add_option("--account", *account, "The destination's name; else the one in use")
        ->type_name("NAME");
    command->callback([&globals, &action, account] {
        action = [&globals, account] { return TestFtp(globals, *account); };
    });
}

}  // namespace orma::cli
