#pragma once

#include "base/text.h"

namespace orma {

/// What the user is told in passing: a line, and one that tells more. Paths are whole.
struct Note {
    Text headline;
    Text detail;
};

}  // namespace orma
