#include "publish/dialogs/current_accounts.h"

#include <algorithm>

#include "publish/dialogs/account_choices.h"

namespace orma {
namespace {

/// A number that nobody knows still asks for protection.
TransportSecurity Security(std::uint32_t number) {
    if (number == 0) return TransportSecurity::kNone;
    return number == 2 ? TransportSecurity::kImplicit : TransportSecurity::kUpgrade;
}

/// The entry behind the choice of that name; null without one.
template <class Table>
auto* EntryNamed(const Table& table, const AccountChoices& choices, const Text& name) {
    const auto line = choices.Find(name);
    return line ? &table[*choices.lines[*line].entry] : nullptr;
}

/// The first entry of a server; null without one.
template <class Table>
auto* EntryOfServer(const Table& table, const Text& server) {
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const auto& entry) { return entry.Server == server; });
    return server.empty() || found == table.end() ? nullptr : &*found;
}

FtpAccount AccountOf(const FtpDestination& entry, const SettingsRecord& settings) {
    return {.server = entry.Server,
            .user = entry.User,
            .password = entry.Password,
            .folder = entry.Folder,
            .passive = entry.Passive != 0,
            .security = Security(entry.Security),
            .caFile = settings.CaFile};
}

SmtpAccount AccountOf(const SmtpDestination& entry, const SettingsRecord& settings) {
    constexpr std::uint32_t kUsualPort = 25;  // also in a file that ends before the port
    constexpr std::uint32_t kLargestPort = 65535;
    const std::uint32_t port = entry.Port == 0 ? kUsualPort : std::min(entry.Port, kLargestPort);
    return {.server = entry.Server,
            .port = static_cast<int>(port),
            .security = Security(entry.Security),
            .authenticate = entry.Auth != 0,
            .user = entry.User,
            .password = entry.Password,
            .caFile = settings.CaFile};
}

}  // namespace

FtpAccount FtpAccountOf(const SettingsRecord& settings, std::size_t entry) {
    return AccountOf(settings.Ftp[entry], settings);
}

SmtpAccount SmtpAccountOf(const SettingsRecord& settings, std::size_t entry) {
    return AccountOf(settings.Smtp[entry], settings);
}

FtpAccount CurrentFtpAccount(const SettingsRecord& settings) {
    const FtpDestination* entry =
        EntryNamed(settings.Ftp, FtpChoices(settings), settings.CurrentFtpName);
    if (settings.FtpServer.empty()) return entry ? AccountOf(*entry, settings) : FtpAccount{};
    if (!entry || (entry->Server != settings.FtpServer && entry->Security == 0))
        entry = EntryOfServer(settings.Ftp, settings.FtpServer);
    const FtpDestination inUse{.Server = settings.FtpServer,
                               .User = settings.FtpUser,
                               .Password = settings.FtpPassword,
                               .Folder = settings.FtpFolder,
                               .Passive = settings.FtpPassive,
                               .Name = settings.CurrentFtpName,
                               .Security = entry ? entry->Security : 0};
    return AccountOf(inUse, settings);
}

SmtpAccount CurrentSmtpAccount(const SettingsRecord& settings) {
    if (const SmtpDestination* entry =
            EntryNamed(settings.Smtp, SmtpChoices(settings), settings.CurrentSmtpName))
        return AccountOf(*entry, settings);
    const SmtpDestination* entry = EntryOfServer(settings.Smtp, settings.SmtpServer);
    SmtpDestination inUse = entry ? *entry : SmtpDestination{};
    inUse.Server = settings.SmtpServer;
    inUse.User = settings.SmtpUser;
    inUse.Password = settings.SmtpPassword;
    inUse.Auth = settings.SmtpAuth;
    return AccountOf(inUse, settings);
}

}  // namespace orma
