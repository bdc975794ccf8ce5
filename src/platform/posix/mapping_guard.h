#pragma once

#include <cstdint>
#include <span>

namespace orma {

/// Keeps a mapped file from ending the program. When its medium goes away, a pulled card, the next
/// store to the mapping raises SIGBUS; the guard then puts memory in the file's place, so that the
/// recording goes on to meet the failure of its own writes. Signals that concern no guarded mapping
/// go to whoever handled them before. UI thread.
class MappingGuard {
  public:
    /// Guards `bytes`, a whole mapping. With too many mappings at once this one stays unguarded.
    explicit MappingGuard(std::span<std::uint8_t> bytes);
    ~MappingGuard() { Release(); }
    MappingGuard(const MappingGuard&) = delete;
    MappingGuard& operator=(const MappingGuard&) = delete;

    /// Ends the guard; before the mapping is undone, for its place may be taken at once.
    void Release();

    /// True when the mapping is no longer the file.
    [[nodiscard]] bool IsLost() const;

  private:
    int slot_;  // -1: unguarded
};

}  // namespace orma
