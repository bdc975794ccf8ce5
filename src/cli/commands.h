#pragma once

#include <functional>

#include "cli/globals.h"

namespace CLI {
class App;
}

namespace orma::cli {

/// What the chosen command does; runs after the command line was parsed and returns an ExitCode.
using Action = std::function<int()>;

/// Each adds its command to the command line and sets `action` when the command is chosen.
void AddRecordCommand(CLI::App& app, const Globals& globals, Action& action);
void AddPlayCommand(CLI::App& app, const Globals& globals, Action& action);
void AddPublishCommand(CLI::App& app, const Globals& globals, Action& action);
void AddVerifyCommand(CLI::App& app, const Globals& globals, Action& action);
void AddShowCommand(CLI::App& app, const Globals& globals, Action& action);
void AddProjectCommand(CLI::App& app, const Globals& globals, Action& action);
void AddMarkCommand(CLI::App& app, const Globals& globals, Action& action);
void AddCutCommand(CLI::App& app, const Globals& globals, Action& action);
void AddCropCommand(CLI::App& app, const Globals& globals, Action& action);
void AddSaveSelectionCommand(CLI::App& app, const Globals& globals, Action& action);
void AddClipsCommand(CLI::App& app, const Globals& globals, Action& action);
void AddDeleteCommand(CLI::App& app, const Globals& globals, Action& action);
void AddRecoverCommand(CLI::App& app, const Globals& globals, Action& action);
void AddSettingsCommand(CLI::App& app, const Globals& globals, Action& action);
void AddDevicesCommand(CLI::App& app, const Globals& globals, Action& action);
void AddAccountsCommand(CLI::App& app, const Globals& globals, Action& action);
void AddTestConnectionCommand(CLI::App& app, const Globals& globals, Action& action);

}  // namespace orma::cli
