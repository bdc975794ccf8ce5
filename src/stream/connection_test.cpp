#include "stream/connection_test.h"

namespace orma {

FtpTrial TestFtpAccount(const FtpAccount& account, FtpServices services) {
    FtpSession session(services, account, {.silent = true});
    if (!session.IsConnected()) return {false, session.LastResult()};
    return {true, session.Client().LookForFolder(account.folder)};
}

SmtpOpenResult TestMailLogIn(const SmtpAccount& account, const MailServices& services) {
    JStreamsmtp smtp(services);
    const SmtpOpenResult result = smtp.Open(account);
    if (result == SmtpOpenResult::kOk) smtp.Disconnect();
    return result;
}

}  // namespace orma
