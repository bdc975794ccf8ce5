#pragma once

#include <limits>
#include <string>
#include <vector>

#include "app/application.h"
#include "cli/commands.h"
#include "cli/output.h"

namespace orma::cli {

/// What differs between the commands that keep a list in a take's level file:
/// "orma NAME TAKE add|remove|list [TIMES]".
struct SheetCommand {
    static constexpr std::size_t kAnyNumber = std::numeric_limits<std::size_t>::max();

    const char* name;
    const char* help;
    const char* timesName;  // for the usage
    const char* timesHelp;
    const char* wrongTimes;  // said when their number is wrong
    std::size_t leastTimes;  // of add and remove; list takes none
    std::size_t mostTimes;

    /// Adds or removes in the current recording; false when that failed (reported). May throw as
    /// TimeInTake does.
    bool (*change)(Application& app, bool add, const std::vector<std::string>& times);

    /// The list, for what is printed.
    Json (*list)(const Application& app);
};

/// Adds such a command.
void AddSheetCommand(CLI::App& app, const Globals& globals, Action& action,
                     const SheetCommand& command);

}  // namespace orma::cli
