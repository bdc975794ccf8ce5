#pragma once

#include <algorithm>
#include <string>
#include <vector>

#include "base/trace.h"

namespace orma::test {

/// Collects the trace lines of a scope.
class TraceLines {
  public:
    TraceLines() {
        SetTraceSink([this](std::string_view line) { lines.emplace_back(line); });
    }
    ~TraceLines() { SetTraceSink({}); }
    TraceLines(const TraceLines&) = delete;
    TraceLines& operator=(const TraceLines&) = delete;

    [[nodiscard]] bool Contain(std::string_view line) const {
        return std::find(lines.begin(), lines.end(), line) != lines.end();
    }

    std::vector<std::string> lines;
};

}  // namespace orma::test
