#pragma once

#include "base/text.h"
#include "platform/ftp_client.h"
#include "report/error_reporter.h"

namespace orma {

/// One FTP destination, as plain values.
struct FtpAccount {
    Text server{};  // host, optionally with a colon and a port
    Text user{};
    Text password{};
    Text folder{};  // remote folder; empty: the log-in folder
    bool passive = false;
    TransportSecurity security = TransportSecurity::kNone;
    Text caFile{};  // PEM file of trusted issuers; empty: those of the system

    friend bool operator==(const FtpAccount&, const FtpAccount&) = default;
};

/// What FTP sessions and streams need; all outlive them.
struct FtpServices {
    FtpClients& clients;
    ErrorReporter& report;
    Patience& patience;
};

}  // namespace orma
