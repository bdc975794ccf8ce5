#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/output.h"
#include "publish/verify.h"

namespace orma::cli {
namespace {

int Verify(const Globals& globals, const std::string& argument) {
    const Text path = CallerPath(argument);
    Environment environment(globals);
    if (!environment.App().ports.storage.Exists(path))
        throw std::runtime_error("the file does not exist: " + argument);
    const VerifyReport report = VerifyPublishedFile(environment.App().files, path);
    Json findings = Json::array();
    for (const Finding& finding : report.findings)
        findings.push_back({{"offset", finding.offset}, {"finding", finding.text}});
    const bool sound = report.findings.empty();
    Print({{"file", ToJson(path)},
           {"checked", report.facts},
           {"findings", findings},
           {"verdict", sound ? "sound" : "NOT sound"}},
          globals.json);
    return sound ? kOk : kFailed;
}

}  // namespace

void AddVerifyCommand(CLI::App& app, const Globals& globals, Action& action) {
    auto path = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand("verify", "Check a published file");
    command->add_option("FILE", *path, "Published Broadcast-Wave file")->required();
    command->footer("Exits with 1 when anything is wrong.");
    command->callback([&globals, &action, path] {
        action = [&globals, path] { return Verify(globals, *path); };
    });
}

}  // namespace orma::cli
