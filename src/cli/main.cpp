// orma: the command line of Orma Edit.

#include <cstdio>
#include <exception>
#include <string>

#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/environment.h"

namespace {

using namespace orma::cli;

int Help(const CLI::App& app, const std::string& command) {
    if (command.empty()) {
        std::fputs(app.help().c_str(), stdout);
        return kOk;
    }
    const auto found = app.get_subcommands(
        [&](const CLI::App* candidate) { return candidate->get_name() == command; });
    if (found.empty()) {
        std::fprintf(stderr, "orma: no command '%s'; 'orma help' lists them\n", command.c_str());
        return kUsage;
    }
    std::fputs(found.front()->help(app.get_name()).c_str(), stdout);
    return kOk;
}

}  // namespace

int main(int argc, char** argv) {
    CLI::App app{"Records speech into projects and publishes it as Broadcast-Wave files.", "orma"};
    app.set_version_flag("--version", "orma " ORMA_VERSION);
    app.require_subcommand(1);
    app.fallthrough();

    Globals globals;
    app.add_option("--home", globals.home, "Program folder with the settings")->type_name("DIR");
    app.add_option("--audio", globals.audio,
                   "portaudio, or virtual:[in=FILE][,out=FILE][,pace=real|fast|SPEED]")
        ->capture_default_str()
        ->type_name("SYSTEM");
    app.add_option("--hardware", globals.hardware,
                   "Recorder and S/PDIF card: alsa[:card=PCM[,rate=HZ]], none, or "
                   "simulated:[recorder=FILE][,card=FILE]")
        ->capture_default_str()
        ->type_name("SYSTEM");
    app.add_option("--trace", globals.trace, "Append diagnostic lines to a file")
        ->type_name("FILE");
    app.add_flag("--json", globals.json, "Print JSON");

    Action action;
    AddRecordCommand(app, globals, action);
    AddPlayCommand(app, globals, action);
    AddPublishCommand(app, globals, action);
    AddVerifyCommand(app, globals, action);
    AddShowCommand(app, globals, action);
    AddProjectCommand(app, globals, action);
    AddMarkCommand(app, globals, action);
    AddCutCommand(app, globals, action);
    AddCropCommand(app, globals, action);
    AddSaveSelectionCommand(app, globals, action);
    AddClipsCommand(app, globals, action);
    AddDeleteCommand(app, globals, action);
    AddRecoverCommand(app, globals, action);
    AddSettingsCommand(app, globals, action);
    AddDevicesCommand(app, globals, action);
    AddAccountsCommand(app, globals, action);
    AddTestConnectionCommand(app, globals, action);

    std::string helpTopic;
    CLI::App* help = app.add_subcommand("help", "Explain a command");
    help->add_option("COMMAND", helpTopic, "The command");
    help->callback([&] { action = [&] { return Help(app, helpTopic); }; });

    try {
        app.parse(argc, argv);
        return action();
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? kOk : kUsage;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "orma: %s\n", error.what());
        return kUsage;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "orma: %s\n", error.what());
        return kFailed;
    }
}
