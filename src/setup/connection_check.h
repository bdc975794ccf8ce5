#pragma once

#include "app/application.h"

namespace orma {

/// How an attempt to log in came out, in words for whoever sets the account up.
struct ConnectionVerdict {
    enum class End { kOk, kRefused, kCancelled };

    End end = End::kRefused;
    Text words;
};

/// Logs in at the account's server, looks for its folder there, and leaves. Reports nothing.
/// Blocking, UI thread; `patience` ends it.
[[nodiscard]] ConnectionVerdict CheckFtpAccount(const FtpAccount& account,
                                                const NetworkPorts& network, FileServices files,
                                                Patience& patience);

/// Greets the mail server, logs in where the account says so, and leaves; as CheckFtpAccount
/// otherwise.
[[nodiscard]] ConnectionVerdict CheckMailAccount(const SmtpAccount& account,
                                                 const NetworkPorts& network, FileServices files,
                                                 Patience& patience);

}  // namespace orma
