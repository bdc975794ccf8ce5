#include "base/trace.h"

#include <cstdarg>
#include <cstdio>
#include <string>
#include <utility>

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
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, arguments);
    va_end(arguments);
    std::string line(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
    std::vsnprintf(line.data(), line.size() + 1, format, again);
    va_end(again);
    Sink()(line.empty() ? std::string_view("EMPTY!") : std::string_view(line));
}

}  // namespace orma
