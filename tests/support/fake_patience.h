#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/patience.h"

namespace orma::test {

/// Patience that never ends, or ends when a test says so: at once, or after so many questions.
struct FakePatience : Patience {
    [[nodiscard]] bool GoOn() override { return goOn && (turns == 0 ? false : (--turns, true)); }

    bool goOn = true;
    std::size_t turns = SIZE_MAX;
};

}  // namespace orma::test
