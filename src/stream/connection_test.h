#pragma once

#include "stream/ftp_session.h"
#include "stream/jstream_smtp.h"

namespace orma {

/// How a try of an FTP account ended: with which step, and how.
struct FtpTrial {
    bool loggedIn = false;  // then the result is that of looking for the account's folder
    FtpResult result;
};

/// Logs in at an FTP server, looks whether the account's folder is there, and leaves, without a
/// report. Whether the folder may be written to, only a publication tells: a file put there to try
/// would be one that somebody finds. Blocking, UI thread.
[[nodiscard]] FtpTrial TestFtpAccount(const FtpAccount& account, FtpServices services);

/// Greets a mail server, logs in where the account says so, and leaves. Blocking, UI thread.
[[nodiscard]] SmtpOpenResult TestMailLogIn(const SmtpAccount& account,
                                           const MailServices& services);

}  // namespace orma
