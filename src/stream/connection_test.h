#pragma once

#include <functional>

#include "stream/ftp_account.h"

namespace orma {

/// A place that always answers, to see whether there is any network at all.
struct WebAddress {
    Text host = u"example.com";  // reserved for such uses (RFC 2606) and served by its registry
    int port = 80;
};

/// True when a TCP connection to host and port comes about. Without a report.
using ReachesHost = std::function<bool(const Text& host, int port)>;

/// Whether what a publication needs is there: for FTP (method 0) a log-in succeeds, for mail (any
/// other method) the web can be reached. Nothing is reported; the caller decides what to say.
/// Blocking, UI thread.
[[nodiscard]] bool TestConnection(int publishMethod, const FtpAccount& account,
                                  FtpServices services, const ReachesHost& reachesHost,
                                  const WebAddress& web = {});

}  // namespace orma
