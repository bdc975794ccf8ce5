#include "publish/dialogs/account_choices.h"

#include "base/trace.h"
#include "settings/mail_places.h"

namespace orma {

std::optional<std::size_t> AccountChoices::Find(TextView name) const {
    for (std::size_t i = 0; i < lines.size(); ++i)
        if (lines[i].entry && lines[i].name == name) return i;
    return std::nullopt;
}

std::optional<std::size_t> AccountChoices::EntryAt(std::optional<std::size_t> line) const {
    return line && *line < lines.size() ? lines[*line].entry : std::nullopt;
}

AccountChoices FtpChoices(const SettingsRecord& settings) {
    AccountChoices choices;
    for (std::size_t i = 0; i < settings.Ftp.size() && !settings.Ftp[i].Name.empty(); ++i)
        if (!settings.Ftp[i].Server.empty()) choices.lines.push_back({settings.Ftp[i].Name, i});
    choices.text = settings.CurrentFtpName;
    choices.selected = choices.Find(choices.text);
    if (!choices.selected && !choices.lines.empty()) choices.selected = 0;
    return choices;
}

AccountChoices SmtpChoices(const SettingsRecord& settings) {
    AccountChoices choices;
    for (std::size_t i = 0; i < settings.Smtp.size(); ++i) {
        const Text& name = settings.Smtp[i].ShownName();
        if (name.empty()) break;
        choices.lines.push_back({name, i});
    }
    choices.text = settings.CurrentSmtpName;
    choices.selected = choices.Find(choices.text);
    choices.lines.resize(settings.Smtp.size(), {u"Empty", std::nullopt});
    return choices;
}

void UseFtpEntry(SettingsRecord& settings, std::size_t entry) {
    const FtpDestination& chosen = settings.Ftp[entry];
    settings.CurrentFtpName = chosen.Name;
    settings.FtpServer = chosen.Server;
    settings.FtpUser = chosen.User;
    settings.FtpPassword = chosen.Password;
    settings.FtpFolder = chosen.Folder;
    settings.FtpPassive = chosen.Passive;
}

void UseSmtpEntry(SettingsRecord& settings, std::size_t entry) {
    const SmtpDestination& chosen = settings.Smtp[entry];
    settings.CurrentSmtpName = chosen.ShownName();
    UseMailAccess(settings, chosen);
    Trace("SMTPServer=%s", ToUtf8(settings.SmtpServer).c_str());
    Trace("SMTPUser=%s", ToUtf8(settings.SmtpUser).c_str());
    Trace("SMTPPassword=%s", settings.SmtpPassword.empty() ? "" : "***");
}

}  // namespace orma
