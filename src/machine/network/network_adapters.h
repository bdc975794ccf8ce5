#pragma once

#include <memory>

#include "platform/ftp_client.h"
#include "platform/keyed_hash.h"
#include "platform/tls_connection.h"

namespace orma {

/// What the module of the network brings: the adapters that stand on libcurl and OpenSSL. They and
/// the thirty libraries below them are 5 MB of memory and most of the time in which the command
/// line starts, and most days of a recorder see no network: so they are loaded on first use.
struct NetworkAdapters {
    std::unique_ptr<FtpClients> ftp;
    std::unique_ptr<FtpClients> liveFtp;  // waits as long as a recording's queue holds out
    std::unique_ptr<TlsConnections> tls;
    std::unique_ptr<KeyedHash> hash;
};

}  // namespace orma
