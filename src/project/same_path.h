#pragma once

#include <algorithm>

#include "base/text.h"

namespace orma {

/// True when two paths are spelled alike, with either separator: clips keep the spelling of the
/// system that they come from. Links and relative paths are not resolved.
[[nodiscard]] inline bool SamePath(TextView a, TextView b) {
    const auto plain = [](char16_t unit) { return unit == u'\\' ? u'/' : unit; };
    return std::ranges::equal(a, b, {}, plain, plain);
}

}  // namespace orma
