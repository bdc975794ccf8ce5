#pragma once

#include <mutex>

#include "machine/network/network_adapters.h"

namespace orma {

/// The ports of the network, whose adapters are loaded when one of them is used first. Where that
/// fails, each says so in its own way: FTP with the system's code ELIBACC, TLS as a handshake that
/// failed, the hash as one that the system refuses. Any thread, each port within its own contract.
class LoadedNetwork {
  public:
    [[nodiscard]] FtpClients& Ftp() { return ftp_; }
    [[nodiscard]] FtpClients& LiveFtp() { return liveFtp_; }
    [[nodiscard]] TlsConnections& Tls() { return tls_; }
    [[nodiscard]] KeyedHash& Hash() { return hash_; }

  private:
    /// Its pointers are null when the module is not there.
    class Module {
      public:
        [[nodiscard]] const NetworkAdapters& Adapters();

      private:
        std::once_flag tried_;
        NetworkAdapters adapters_;
    };

    class Clients : public FtpClients {
      public:
        Clients(Module& module, std::unique_ptr<FtpClients> NetworkAdapters::*which)
            : module_(module), which_(which) {}
        [[nodiscard]] std::unique_ptr<FtpClient> Create(Patience& patience,
                                                        FtpResult& result) override;

      private:
        Module& module_;
        std::unique_ptr<FtpClients> NetworkAdapters::*which_;
    };

    class Secured : public TlsConnections {
      public:
        explicit Secured(Module& module) : module_(module) {}
        [[nodiscard]] TlsFailure Secure(std::unique_ptr<TcpConnection> plain, const TlsPeer& peer,
                                        unsigned milliseconds,
                                        std::unique_ptr<TcpConnection>& secured) override;

      private:
        Module& module_;
    };

    class Hashed : public KeyedHash {
      public:
        explicit Hashed(Module& module) : module_(module) {}
        [[nodiscard]] bool HmacMd5(ByteSpan key, ByteSpan text,
                                   std::array<std::uint8_t, 16>& digest) override;

      private:
        Module& module_;
    };

    Module module_;
    Clients ftp_{module_, &NetworkAdapters::ftp};
    Clients liveFtp_{module_, &NetworkAdapters::liveFtp};
    Secured tls_{module_};
    Hashed hash_{module_};
};

}  // namespace orma
