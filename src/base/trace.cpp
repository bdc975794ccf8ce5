#include "base/trace.h"

#include <cstdarg>
#include <string>
#include <utility>

#include "base/text.h"

namespace orma {
namespace {

TraceSink& Sink() {
    static TraceSink sink;
    return sink;
}

}  // namespace

void SetTraceSink(TraceSink sink) {
    Sink() = std::move(sink);
}

void Trace(const char* format, ...) {
    if (!Sink()) return;
    va_list arguments;
    va_start(arguments, format);
    const std::string line = FormatList(format, arguments);
    va_end(arguments);
    Sink()(line.empty() ? std::string_view("EMPTY!") : std::string_view(line));
}

}  // namespace orma
