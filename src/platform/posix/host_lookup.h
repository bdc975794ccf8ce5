#pragma once

#include <string>

#include "platform/tcp_connection.h"

namespace orma {

/// The first IPv4 address of a host name. Waits for the system's resolver or the end of Patience.
[[nodiscard]] NetworkResult LookUpName(const std::string& name, Patience& patience,
                                       Ipv4Address& address);

/// Done when the address has a host name. Waits likewise.
[[nodiscard]] NetworkResult LookUpNameOf(const Ipv4Address& address, Patience& patience);

}  // namespace orma
