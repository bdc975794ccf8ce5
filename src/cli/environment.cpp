#include "cli/environment.h"

#include <filesystem>

#include "base/trace.h"
#include "platform/posix/program_folder.h"

namespace orma::cli {
Environment::Environment(const Globals& globals) {
    Build(globals, {quietTransport_, quietProgress_});
}

Environment::Environment(const Globals& globals, TransportListener& transport,
                         std::function<void()> onInterrupt) {
    interrupt_.emplace(loop_, [call = std::move(onInterrupt)](int) { call(); });
    Build(globals, {transport, quietProgress_});
}

Environment::Environment(const Globals& globals, PublishProgress& progress) {
    Build(globals, {quietTransport_, progress});
}

void Environment::Build(const Globals& globals, FrontEnd frontEnd) {
    if (!globals.trace.empty()) {
        trace_ = std::fopen(globals.trace.c_str(), "ae");
        if (trace_ == nullptr) throw UsageError("--trace: cannot open " + globals.trace);
        SetTraceSink([file = trace_](std::string_view line) {
            std::fprintf(file, "%.*s\n", static_cast<int>(line.size()), line.data());
            std::fflush(file);
        });
    }
    hardware_ = MakeHardware(globals, loop_);
    const Text home = globals.home.empty() ? Text() : CallerPath(globals.home);
    Text folder;
    if (const SystemError error = FindProgramFolder(storage_, home, folder); error != 0)
        throw UsageError("cannot create the program folder " + ToUtf8(folder) + ": " +
                         ToUtf8(storage_.ErrorText(error)));
    std::error_code ignored;
    std::filesystem::current_path(ToUtf8(folder), ignored);
    app_ = std::make_unique<Application>(Ports{.storage = storage_,
                                               .clock = clock_,
                                               .boxes = boxes_,
                                               .loop = loop_,
                                               .waves = *hardware_.waves,
                                               .headset = *hardware_.headset,
                                               .externalRecorder = hardware_.recorder.get(),
                                               .spdif = hardware_.card.get(),
                                               .desktop = &desktop_,
                                               .network = &network_,
                                               .liveFtp = &liveFtp_},
                                         frontEnd, folder);
}

Environment::~Environment() {
    app_.reset();
    SetTraceSink({});
    if (trace_ != nullptr) std::fclose(trace_);
}

}  // namespace orma::cli
