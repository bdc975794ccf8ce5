#include <CLI/CLI.hpp>

#include "cli/commands.h"
#include "cli/environment.h"
#include "cli/output.h"

namespace orma::cli {
namespace {

Json List(const std::vector<WaveDeviceInfo>& devices) {
    Json list = Json::array();
    for (const WaveDeviceInfo& device : devices) {
        list.push_back({{"name", ToJson(device.name)},
                        {"channels", device.channels},
                        {"default", device.isDefault}});
    }
    return list;
}

int Devices(const Globals& globals) {
    Environment environment(globals);
    Print({{"inputs", List(environment.Waves().Inputs())},
           {"outputs", List(environment.Waves().Outputs())}},
          globals.json);
    return kOk;
}

}  // namespace

void AddDevicesCommand(CLI::App& app, const Globals& globals, Action& action) {
    CLI::App* command = app.add_subcommand("devices", "List the sound devices");
    command->callback([&] { action = [&] { return Devices(globals); }; });
}

}  // namespace orma::cli
