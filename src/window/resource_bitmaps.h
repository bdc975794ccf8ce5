#pragma once

#include "ui/skin/skin.h"

namespace orma {

/// The bitmaps that are linked into the program as Qt resources ":/skin/494.bmp" and
/// ":/skin/494@2x.bmp". Each is unpacked when it is asked for. UI thread.
class ResourceBitmaps : public BuiltInBitmaps {
  public:
    ResourceBitmaps();

    [[nodiscard]] std::vector<std::uint8_t> File(int number, bool doubled) override;
};

}  // namespace orma
