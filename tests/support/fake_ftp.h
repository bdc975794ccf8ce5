#pragma once

#include <limits>
#include <map>
#include <string>
#include <vector>

#include "platform/ftp_client.h"
#include "support/fake_patience.h"

namespace orma::test {

/// A server in memory, and its clients: what it holds, what it was asked, how it misbehaves. One
/// file at a time is open, as a client has it; the server outlives its clients.
class FakeFtp : public FtpClients {
  public:
    static constexpr std::size_t kNever = std::numeric_limits<std::size_t>::max();

    [[nodiscard]] std::unique_ptr<FtpClient> Create(Patience& patience, FtpResult& result) override;

    std::map<Text, Bytes> files;
    std::vector<std::string> log;  // "CONNECT host:21", "REST 5", "STOR a/b.mp2", "CLOSE", "QUIT"
    FtpTarget target;              // of the last log-in

    // The script. What is counted in bytes happens once and then resets itself.
    FtpResult creation;                       // what Create says
    FtpResult connection;                     // what log-ins say
    std::size_t failingConnections = kNever;  // how many of them, where `connection` is a failure
    FtpResult folder;                         // what looking for one says
    bool takesRestart = true;                 // 350 to REST
    FtpResult restart{kFtpRefused, 502, u"502 No restart here."};  // otherwise
    FtpResult opening;                                             // what opening a file says
    FtpResult restartedStore;  // what a server that accepts REST says to the STOR behind it
    std::size_t refusedRestartedStores = kNever;  // to how many, where that is a failure
    bool hidesUploads = false;         // a new file comes to stand under its name when it is whole
    std::size_t breaksAfter = kNever;  // the upload fails with the write that exceeds so many bytes
    FtpResult breaking{kFtpConnectionLost, 0, {}};  // if none, nothing arrives and nobody notices
    std::size_t losesAtBreak = 0;  // bytes at the end of completed writes that never arrived
    bool knowsSize = true;         // has SIZE
    FtpResult confirmation;        // what CloseFile says after an upload
};

}  // namespace orma::test
