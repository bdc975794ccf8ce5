#pragma once

#include <cstdint>
#include <cstdio>
#include <memory>

#include "base/text.h"

namespace orma {

/// A file of 8 bytes, little-endian, that holds how many sample frames were handed to the program,
/// up to date at every moment also when the program is killed. One thread.
class DeliveryCount {
  public:
    /// `path` empty: counts for nobody. A file that cannot be created is traced.
    explicit DeliveryCount(const Text& path);

    void Set(std::uint64_t frames);

  private:
    struct Closer {
        void operator()(std::FILE* file) const { std::fclose(file); }
    };
    std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace orma
