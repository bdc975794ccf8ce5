#pragma once

#include <stdexcept>

#include "machine/machine_options.h"

namespace orma::cli {

/// Options that every command takes.
struct Globals : MachineOptions {
    bool json = false;
};

/// How a command ended, as the shell sees it.
enum ExitCode { kOk = 0, kFailed = 1, kUsage = 2 };

/// Wrong usage, found after the command line was parsed; main prints it and exits with 2.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

}  // namespace orma::cli
