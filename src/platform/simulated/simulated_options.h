#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "base/text.h"

namespace orma {

/// What is wrong with a simulated S/PDIF card.
enum class SimulatedFault { kNone, kNoDriver, kNoCard, kNoSignal };

struct SimulatedCardOptions {
    Text file;  // the sound that comes in, at the file's own rate; silence follows
    SimulatedFault fault = SimulatedFault::kNone;
    bool fast = false;                               // 50 ms at each look instead of real time
    std::optional<std::uint32_t> stallSeconds = {};  // nothing comes in after this much sound
};

struct SimulatedRecorderOptions {
    Text file;                  // the sound that its microphone hears
    std::uint16_t version = 1;  // as its information block counts, from 0
};

/// Hardware that is played by files.
struct SimulatedOptions {
    std::optional<SimulatedRecorderOptions> recorder;
    std::optional<SimulatedCardOptions> card;
};

/// Reads `simulated:[recorder=FILE[,version=N]][,card=FILE[,pace=real|fast]
/// [,fault=no-driver|no-card|no-signal][,stall=SECONDS]]`; at least one of the two must be named,
/// what follows a device belongs to it. A comma belongs to a file name unless one of these keys
/// follows it. On failure nothing is returned and `error` tells why, in one UTF-8 sentence.
[[nodiscard]] std::optional<SimulatedOptions> ParseSimulated(std::string_view text,
                                                             std::string& error);

}  // namespace orma
