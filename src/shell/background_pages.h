#pragma once

#include "settings/settings_record.h"
#include "ui/controls/win.h"

namespace orma {

/// The background pages of recorder and editor: plain or with room for the publish-clip button,
/// upright or for a landscape skin. On a display that is wider than high the landscape skin, made
/// for a device that is held sideways, is switched off in `settings` first, for as long as the
/// program runs.
[[nodiscard]] Pages ChooseBackgroundPages(Size display, SettingsRecord& settings);

}  // namespace orma
