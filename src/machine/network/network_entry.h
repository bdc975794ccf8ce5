#pragma once

#include "machine/network/network_adapters.h"

namespace orma {

/// The one name that the module exports; fills `adapters`, which must not outlive the module. It
/// ends in a sum over the headers whose types cross: a program that runs while another version is
/// installed over it does not find its entry there, instead of calling into the wrong places.
extern "C" void ORMA_NETWORK_ENTRY(NetworkAdapters& adapters);
inline constexpr const char* kNetworkEntry = ORMA_NETWORK_ENTRY_NAME;

/// Where the module lies, seen from the folder of the program.
inline constexpr const char* kNetworkModule = "../lib/orma-edit/network.so";

}  // namespace orma
