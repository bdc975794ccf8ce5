#include "publish/publish_settings.h"

#include <algorithm>

namespace orma {
namespace {

/// The table's entry that a destination in use was taken from: the first of its name and server,
/// else the first of its server, else of its name. Null when there is none.
template <class Table>
const typename Table::value_type* EntryInUse(const Table& table, const Text& name,
                                             const Text& server) {
    const auto sameServer = [&](const auto& entry) { return entry.Server == server; };
    const auto sameBoth = [&](const auto& entry) {
        return entry.Server == server && entry.Name == name;
    };
    auto found = std::ranges::find_if(table, sameBoth);
    if (found == table.end()) found = std::ranges::find_if(table, sameServer);
    if (found == table.end() && !name.empty())
        found = std::ranges::find_if(table, [&](const auto& entry) { return entry.Name == name; });
    return found == table.end() ? nullptr : &*found;
}

TransportSecurity SecurityOf(std::uint32_t setting) {
    switch (setting) {
        case 0:
            return TransportSecurity::kNone;
        case 2:
            return TransportSecurity::kImplicit;
        default:
            return TransportSecurity::kUpgrade;
    }
}

/// The extension of the text file's name, with its dot.
Text ExtensionOf(const Text& fileName) {
    const std::size_t dot = fileName.rfind(u'.');
    return dot == Text::npos ? u".txt" : fileName.substr(dot);
}

}  // namespace

FtpAccount FtpAccountInUse(const SettingsRecord& settings) {
    FtpAccount account;
    account.server = settings.FtpServer;
    account.user = settings.FtpUser;
    account.password = settings.FtpPassword;
    account.folder = settings.FtpFolder;
    account.passive = settings.FtpPassive != 0;
    if (const auto* entry = EntryInUse(settings.Ftp, settings.CurrentFtpName, settings.FtpServer))
        account.security = SecurityOf(entry->Security);
    account.caFile = settings.CaFile;
    return account;
}

SmtpAccount SmtpAccountInUse(const SettingsRecord& settings) {
    SmtpAccount account;
    account.server = settings.SmtpServer;
    account.authenticate = settings.SmtpAuth != 0;
    account.user = settings.SmtpUser;
    account.password = settings.SmtpPassword;
    if (const auto* entry =
            EntryInUse(settings.Smtp, settings.CurrentSmtpName, settings.SmtpServer)) {
        account.port = static_cast<int>(entry->Port);
        account.security = SecurityOf(entry->Security);
    }
    account.caFile = settings.CaFile;
    return account;
}

PublishSettings PublishSettingsOf(const SettingsRecord& settings) {
    PublishSettings publish;
    publish.publishToFile = settings.PublishToFile != 0;
    publish.publishExtension = settings.PublishExtension;
    publish.originator = {settings.OriginatorCountry, settings.OriginatorOrganisation,
                          settings.OriginatorUser};
    publish.method = settings.PublishMethod == 1   ? PublishMethod::kOutbox
                     : settings.PublishMethod == 2 ? PublishMethod::kMail
                                                   : PublishMethod::kFtp;
    publish.ftpPublishing = settings.FtpPublishing != 0;
    publish.ftp = FtpAccountInUse(settings);
    publish.broadcastWave = settings.BwfHeader != 0;
    publish.autoResume = settings.AutoResume != 0;
    publish.serverChoice = settings.ServerChoice != 0;
    publish.smtp = SmtpAccountInUse(settings);
    publish.recipient = settings.Recipient;
    publish.subject = settings.Subject;
    publish.fastBitrateIndex = settings.FastBitrateIndex;
    publish.imagePublishing = settings.ImagePublishing != 0;
    publish.keepImageNames = settings.KeepImageNames != 0;
    publish.publishText = settings.PublishText != 0;
    if (settings.UseProjectTextFile != 0 && !settings.ProjectTextFile.empty())
        publish.textExtension = ExtensionOf(settings.ProjectTextFile);
    return publish;
}

}  // namespace orma
