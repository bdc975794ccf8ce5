#pragma once

#include <cstdint>
#include <string>
#include <utility>

#include "publish/verify.h"

namespace orma {

/// Collects what a check finds out. A broken file can be wrong in every byte, so findings beyond a
/// readable number are counted only.
class VerifyNotes {
  public:
    static constexpr std::size_t kMaxFindings = 100;

    explicit VerifyNotes(VerifyReport& report) : report_(report) {}

    void Fact(std::string text) { report_.facts.push_back(std::move(text)); }

    void Find(std::uint64_t offset, std::string text) {
        ++found_;
        if (found_ < kMaxFindings)
            report_.findings.push_back({static_cast<std::uint32_t>(offset), std::move(text)});
        else if (found_ == kMaxFindings)
            report_.findings.push_back(
                {static_cast<std::uint32_t>(offset), "... and more findings, not listed"});
    }

    /// Finds `text` at `offset` unless `holds`.
    void Require(bool holds, std::uint64_t offset, const char* text) {
        if (!holds) Find(offset, text);
    }

    /// Findings so far, listed or not.
    [[nodiscard]] std::size_t Found() const { return found_; }

  private:
    VerifyReport& report_;
    std::size_t found_ = 0;
};

}  // namespace orma
