#pragma once

#include <optional>
#include <vector>

#include "app/application.h"

namespace orma {

/// What the user can choose about the input, and what is in use.
struct InputOptions {
    std::vector<EqualizerSet> sets;  // that can be found by their names
    std::optional<std::size_t> set;  // in use; none: the equaliser is off
    std::uint32_t sampleRate = 0;    // Hz, that the sets would filter
    bool gainControl = false;        // the program's own input gain acts
    std::int32_t gainDb = 0;         // 0..40
    bool liveFtpAllowed = false;     // projects may record straight to FTP
    bool liveFtp = false;            // ... and the current one does
};

[[nodiscard]] InputOptions InputOptionsOf(const Application& app);

/// Brings set, gain and straight-to-FTP recording into use and remembers them: the first two in the
/// user state, the last in the project. Options that cannot be chosen are left alone. False when
/// something could not be saved (reported); it is in use all the same. Not during a take.
[[nodiscard]] bool ApplyInputOptions(Application& app, const InputOptions& chosen);

}  // namespace orma
