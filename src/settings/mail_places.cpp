#include "settings/mail_places.h"

namespace orma {

std::array<SmtpDestination, 2> MailPlaces(const SettingsRecord& settings) {
    return {{{.Server = settings.SmtpServer,
              .User = settings.SmtpUser,
              .Password = settings.SmtpPassword,
              .Auth = settings.SmtpAuth,
              .Name = {}},
             {.Server = settings.Smtp1Server,
              .User = settings.Smtp1User,
              .Password = settings.Smtp1Password,
              .Auth = settings.Smtp1Auth,
              .Name = {}}}};
}

void StoreMailPlaces(SettingsRecord& settings) {
    UseMailAccess(settings, settings.Smtp[0]);
    const SmtpDestination& second = settings.Smtp[1];
    settings.Smtp1Server = second.Server;
    settings.Smtp1User = second.User;
    settings.Smtp1Password = second.Password;
    settings.Smtp1Auth = second.Auth;
}

void UseMailAccess(SettingsRecord& settings, const SmtpDestination& account) {
    settings.SmtpServer = account.Server;
    settings.SmtpUser = account.User;
    settings.SmtpPassword = account.Password;
    settings.SmtpAuth = account.Auth;
}

void CopyMailAccess(const SmtpDestination& from, SmtpDestination& to) {
    to.Server = from.Server;
    to.User = from.User;
    to.Password = from.Password;
    to.Auth = from.Auth;
}

bool SameMailAccess(const SmtpDestination& a, const SmtpDestination& b) {
    return a.Server == b.Server && a.User == b.User && a.Password == b.Password && a.Auth == b.Auth;
}

}  // namespace orma
