#include "shell/background_pages.h"

namespace orma {

Pages ChooseBackgroundPages(Size display, SettingsRecord& settings) {
    if (display.width > display.height) settings.LandscapeSkin = 0;
    const bool landscape = settings.LandscapeSkin != 0;
    if (settings.PublishClipButton != 0) return landscape ? Pages{523, 524} : Pages{509, 510};
    return landscape ? Pages{521, 522} : Pages{494, 495};
}

}  // namespace orma
