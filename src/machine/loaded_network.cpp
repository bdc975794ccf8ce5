#include "machine/loaded_network.h"

#include <cerrno>
#include <utility>

#include "machine/network/network_entry.h"
#include "platform/posix/loaded_module.h"

namespace orma {

const NetworkAdapters& LoadedNetwork::Module::Adapters() {
    std::call_once(tried_, [this] {
        void* const open = FindInModule(kNetworkModule, kNetworkEntry);
        if (open != nullptr) reinterpret_cast<decltype(&ORMA_NETWORK_ENTRY)>(open)(adapters_);
    });
    return adapters_;
}

std::unique_ptr<FtpClient> LoadedNetwork::Clients::Create(Patience& patience, FtpResult& result) {
    if (FtpClients* const clients = (module_.Adapters().*which_).get())
        return clients->Create(patience, result);
    result = {ELIBACC, 0, {}};
    return nullptr;
}

TlsFailure LoadedNetwork::Secured::Secure(std::unique_ptr<TcpConnection> plain, const TlsPeer& peer,
                                          unsigned milliseconds,
                                          std::unique_ptr<TcpConnection>& secured) {
    TlsConnections* const tls = module_.Adapters().tls.get();
    return tls != nullptr ? tls->Secure(std::move(plain), peer, milliseconds, secured)
                          : TlsFailure::kHandshake;
}

bool LoadedNetwork::Hashed::HmacMd5(ByteSpan key, ByteSpan text,
                                    std::array<std::uint8_t, 16>& digest) {
    KeyedHash* const hash = module_.Adapters().hash.get();
    return hash != nullptr && hash->HmacMd5(key, text, digest);
}

}  // namespace orma
