#include <cstdio>

#include <CLI/CLI.hpp>

#include "audio/files/vu_file.h"
#include "base/path.h"
#include "cli/commands.h"
#include "cli/describe.h"
#include "cli/environment.h"
#include "cli/level_graph.h"

namespace orma::cli {
namespace {

constexpr unsigned kGraphColumns = 76;
constexpr unsigned kGraphRows = 12;

int Show(const Globals& globals, const std::string& argument, bool graph) {
    if (graph && globals.json) throw UsageError("--graph is a drawing; --json shows the values");
    const Text path = CallerPath(argument);
    Environment environment(globals);
    Application& app = environment.App();
    if (!graph) {
        Print(DescribeFile(app, path), globals.json);
        return kOk;
    }
    const auto sheet = ReadVuFile(app.files, WithExtension(path, u".jvu"));
    if (!sheet) return kFailed;
    std::fputs(LevelGraph(*sheet, kGraphColumns, kGraphRows).c_str(), stdout);
    return kOk;
}

}  // namespace

void AddShowCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto path = std::make_shared<std::string>();
    auto graph = std::make_shared<bool>(false);
    CLI::App* command = app.add_subcommand("show", "Show what any file of this program holds");
    command->add_option("FILE", *path, "Take, level file, project, settings or published file")
        ->required();
    command->add_flag("--graph", *graph, "Draw the level graph of a take instead");
    command->callback([&globals, &action, path, graph] {
        action = [&globals, path, graph] { return Show(globals, *path, *graph); };
    });
}

}  // namespace orma::cli
