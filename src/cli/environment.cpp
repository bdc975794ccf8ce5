#include "cli/environment.h"

#include <utility>

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
    std::string error;
    if (!machine_.Open(globals, error)) throw UsageError(error);
    app_ = std::make_unique<Application>(machine_.MakePorts(), frontEnd, machine_.ProgramFolder());
}

}  // namespace orma::cli
