#include <stdexcept>

#include <CLI/CLI.hpp>

#include "app/application_menu.h"
#include "app/start_up.h"
#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/open_take.h"
#include "cli/position.h"

namespace orma::cli {
namespace {

struct SaveOptions {
    std::string take;
    std::string begin;
    std::string end;
    std::string out;
    bool overwrite = false;
};

int Save(const Globals& globals, const SaveOptions& options) {
    const Text path = TakePath(options.take);
    const Text out = TakePath(options.out);
    if (SplitPath(path).extension != SplitPath(out).extension)
        throw UsageError("a selection is saved in the format of its take");
    Environment environment(globals);
    Application& app = environment.App();
    LoadSettings(app);
    OpenTake(app, path);
    SelectRange(app, options.begin, options.end);
    if (app.ports.storage.Exists(out) && !options.overwrite)
        throw std::runtime_error(
            "the file exists; --overwrite replaces it (the take itself would lose what lies "
            "outside the range): " +
            options.out);
    const std::uint32_t periods = app.recording.selectionEnd - app.recording.selectionStart;
    if (!MenuSaveSelAs(app, out)) return kFailed;
    Print({{"saved", ToJson(out)},
           {"levels", ToJson(WithExtension(out, u".jvu"))},
           {"length", PositionText(periods, app.audio.PeriodsPerSecond())},
           {"periods", periods}},
          globals.json);
    return environment.Boxes().Errors() == 0 ? kOk : kFailed;
}

}  // namespace

void AddSaveSelectionCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto options = std::make_shared<SaveOptions>();
    CLI::App* command = app.add_subcommand(
        "save-selection", "Save a part of a take as a take of its own, with levels and marks");
    command->add_option("TAKE", options->take, "Take of a project, or any recording")->required();
    command->add_option("BEGIN", options->begin, "m:ss.hh, seconds or #N periods")->required();
    command->add_option("END", options->end, "Likewise")->required();
    command->add_option("OUT", options->out, "The new file, of the take's kind")->required();
    command->add_flag("--overwrite", options->overwrite, "Replace OUT, or cut TAKE itself");
    command->callback([&globals, &action, options] {
        action = [&globals, options] { return Save(globals, *options); };
    });
}

}  // namespace orma::cli
