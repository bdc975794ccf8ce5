#include "machine/machine.h"

#include <filesystem>

#include "base/trace.h"
#include "platform/posix/program_folder.h"

namespace orma {

bool Machine::Open(const MachineOptions& options, std::string& error) {
    if (!options.trace.empty()) {
        trace_ = std::fopen(options.trace.c_str(), "ae");
        if (trace_ == nullptr) {
            error = "--trace: cannot open " + options.trace;
            return false;
        }
        SetTraceSink([file = trace_](std::string_view line) {
            std::fprintf(file, "%.*s\n", static_cast<int>(line.size()), line.data());
            std::fflush(file);
        });
    }
    auto hardware = MakeHardware(options, loop_, error);
    if (!hardware) return false;
    hardware_ = std::move(*hardware);
    const Text home = options.home.empty() ? Text() : CallerPath(options.home);
    if (const SystemError failure = FindProgramFolder(storage_, home, folder_); failure != 0) {
        error = "cannot create the program folder " + ToUtf8(folder_) + ": " +
                ToUtf8(storage_.ErrorText(failure));
        return false;
    }
    std::error_code ignored;
    std::filesystem::current_path(ToUtf8(folder_), ignored);
    return true;
}

Machine::~Machine() {
    SetTraceSink({});
    if (trace_ != nullptr) std::fclose(trace_);
}

Ports Machine::MakePorts(MessageBoxes& boxes) {
    return {.storage = storage_,
            .clock = clock_,
            .boxes = boxes,
            .loop = loop_,
            .waves = *hardware_.waves,
            .headset = *hardware_.headset,
            .externalRecorder = hardware_.recorder.get(),
            .spdif = hardware_.card.get(),
            .desktop = &desktop_,
            .network = &network_,
            .liveFtp = &loaded_.LiveFtp()};
}

}  // namespace orma
