#pragma once

#include "platform/ftp_client.h"

namespace orma {

/// How long the client waits for what, in milliseconds. Some servers delay their answer to a
/// refused log-in by several seconds, so connecting and replies get at least 15 s.
struct FtpLimits {
    std::uint32_t connectMs = 30'000;  // until logged in, all addresses of the host together
    std::uint32_t replyMs = 60'000;    // for one reply; storing a long file may need its time
    std::uint32_t stallMs = 30'000;    // without a byte moved by a transfer
};

/// FTP and FTPS through libcurl, in the calling thread.
class CurlFtpClients : public FtpClients {
  public:
    explicit CurlFtpClients(FtpLimits limits = {}) : limits_(limits) {}

    [[nodiscard]] std::unique_ptr<FtpClient> Create(Patience& patience, FtpResult& result) override;

  private:
    FtpLimits limits_;
};

}  // namespace orma
