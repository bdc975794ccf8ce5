#include "publish/dialogs/current_accounts.h"

#include <algorithm>

#include "base/small_letter.h"
#include "publish/dialogs/account_choices.h"
#include "settings/mail_places.h"

namespace orma {
namespace {

/// A number that nobody knows still asks for protection.
TransportSecurity Security(std::uint32_t number) {
    if (number == 0) return TransportSecurity::kNone;
    return number == 2 ? TransportSecurity::kImplicit : TransportSecurity::kUpgrade;
}

/// The entry of that name in a "Server" box; null without one. Several may bear the name of one
/// server: the first of those that are most like the settings in use, as `likeness` numbers it.
template <class Table, class Likeness>
auto* EntryNamed(const Table& table, const AccountChoices& choices, const Text& name,
                 const Likeness& likeness) {
    const typename Table::value_type* best = nullptr;
    for (const AccountChoice& line : choices.lines) {
        if (!line.entry || line.name != name) continue;
        const auto& entry = table[*line.entry];
        if (best == nullptr || likeness(entry) > likeness(*best)) best = &entry;
    }
    return best;
}

/// A server text without its port, in small letters: host names know no case (RFC 4343).
Text HostOf(const Text& server) {
    Text host = server.substr(0, server.rfind(u':'));
    std::ranges::transform(host, host.begin(), SmallLetter);
    return host;
}

/// The first entry of a host that asks for protection, else the first of that host; null without.
template <class Table>
auto* EntryOfHost(const Table& table, const Text& server) {
    const typename Table::value_type* found = nullptr;
    for (const auto& entry : table) {
        if (server.empty() || HostOf(entry.Server) != HostOf(server)) continue;
        if (entry.Security != 0) return &entry;
        if (found == nullptr) found = &entry;
    }
    return found;
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
    const auto likeness = [&](const FtpDestination& entry) {
        return entry.Server == settings.FtpServer && entry.User == settings.FtpUser;
    };
    const FtpDestination* entry =
        EntryNamed(settings.Ftp, FtpChoices(settings), settings.CurrentFtpName, likeness);
    if (settings.FtpServer.empty()) return entry ? AccountOf(*entry, settings) : FtpAccount{};
    if (!entry || (HostOf(entry->Server) != HostOf(settings.FtpServer) && entry->Security == 0))
        entry = EntryOfHost(settings.Ftp, settings.FtpServer);
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
    const auto likeness = [&](const SmtpDestination& entry) {
        const bool same = entry.Server == settings.SmtpServer && entry.User == settings.SmtpUser &&
                          entry.Auth == settings.SmtpAuth;
        if (!same) return 0;
        return entry.Password == settings.SmtpPassword ? 2 : 1;
    };
    if (const SmtpDestination* entry =
            EntryNamed(settings.Smtp, SmtpChoices(settings), settings.CurrentSmtpName, likeness))
        return AccountOf(*entry, settings);
    const SmtpDestination* entry = EntryOfHost(settings.Smtp, settings.SmtpServer);
    SmtpDestination inUse = entry ? *entry : SmtpDestination{};
    CopyMailAccess(MailPlaces(settings)[0], inUse);
    return AccountOf(inUse, settings);
}

}  // namespace orma
