#include <CLI/CLI.hpp>

#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/output.h"
#include "publish/dialogs/account_choices.h"
#include "publish/dialogs/current_accounts.h"

namespace orma::cli {
namespace {

const char* Protection(TransportSecurity security, const char* upgrade) {
    if (security == TransportSecurity::kNone) return "none";
    return security == TransportSecurity::kUpgrade ? upgrade : "implicit TLS";
}

/// Passwords are never printed: what goes to a terminal is seen and logged. Without a server there
/// is nothing to tell.
Json Describe(const Text& name, const FtpAccount& account) {
    if (account.server.empty()) return Json::object();
    return {{"name", ToJson(name)},
            {"server", ToJson(account.server)},
            {"user", ToJson(account.user)},
            {"password set", !account.password.empty()},
            {"folder", ToJson(account.folder)},
            {"passive", account.passive},
            {"protection", Protection(account.security, "explicit TLS")}};
}

Json Describe(const Text& name, const SmtpAccount& account) {
    if (account.server.empty()) return Json::object();
    return {{"name", ToJson(name)},
            {"server", ToJson(account.server)},
            {"port", account.port},
            {"log-in", account.authenticate},
            {"user", ToJson(account.user)},
            {"password set", !account.password.empty()},
            {"protection", Protection(account.security, "STARTTLS")}};
}

template <class AccountOf>
Json Describe(const AccountChoices& choices, const AccountOf& accountOf) {
    Json list = Json::array();
    for (const AccountChoice& line : choices.lines)
        if (line.entry) list.push_back(Describe(line.name, accountOf(*line.entry)));
    return list;
}

int List(const Globals& globals) {
    Environment environment(globals);
    LoadSettings(environment.App());
    const SettingsRecord& settings = environment.App().settings;
    const auto ftp = [&](std::size_t entry) { return FtpAccountOf(settings, entry); };
    const auto mail = [&](std::size_t entry) { return SmtpAccountOf(settings, entry); };
    Print({{"ftp in use", Describe(settings.CurrentFtpName, CurrentFtpAccount(settings))},
           {"mail in use", Describe(settings.CurrentSmtpName, CurrentSmtpAccount(settings))},
           {"ftp", Describe(FtpChoices(settings), ftp)},
           {"mail", Describe(SmtpChoices(settings), mail)}},
          globals.json);
    return kOk;
}

}  // namespace

void AddAccountsCommand(CLI::App& app, const Globals& globals, Action& action) {
    CLI::App* command = app.add_subcommand("accounts", "FTP destinations and mail accounts");
    command->require_subcommand(1);
    CLI::App* list = command->add_subcommand(
        "list", "List the accounts that publishing offers and those in use, without passwords");
    list->callback([&] { action = [&] { return List(globals); }; });
}

}  // namespace orma::cli
