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

Json Recorder(Application& app) {
    if (app.externalRecorder.FindExternalRecorder() < 0) return "none";
    const std::uint32_t number = app.externalRecorder.DeviceNumber();
    return {{"name", ToJson(app.ports.externalRecorder->OutputNames()[number])},
            {"number", number},
            {"version", app.externalRecorder.Version()}};
}

Json Card(Application& app) {
    const Text name = app.ports.spdif != nullptr ? app.ports.spdif->Name() : Text();
    return name.empty() ? Json("none") : ToJson(name);
}

Json Headset(Application& app) {
    const int state = app.input.GetHeadsetState();
    if (state < 0) return "unknown";
    return state == 0 ? "not plugged in" : "plugged in";
}

int Devices(const Globals& globals) {
    Environment environment(globals);
    Application& app = environment.App();
    Print({{"inputs", List(environment.Waves().Inputs())},
           {"outputs", List(environment.Waves().Outputs())},
           {"external recorder", Recorder(app)},
           {"digital input", Card(app)},
           {"headset", Headset(app)}},
          globals.json);
    return kOk;
}

}  // namespace

void AddDevicesCommand(CLI::App& app, const Globals& globals, Action& action) {
    CLI::App* command =
        app.add_subcommand("devices", "List the sound devices and what is attached");
    command->callback([&] { action = [&] { return Devices(globals); }; });
}

}  // namespace orma::cli
