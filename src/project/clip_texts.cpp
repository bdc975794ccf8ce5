#include "project/clip_texts.h"

namespace orma {
namespace {

Text DurationText(const ClipEntry& clip) {
    return FormatText("%2d:%02d", static_cast<int>(clip.lengthSeconds / 60),
                      static_cast<int>(clip.lengthSeconds % 60));
}

Text DateText(const DateTime& time) {
    return FormatText("%2d/%02d/%04d", time.day, time.month, time.year);
}

Text TimeDateText(const DateTime& time) {
    return FormatText("%2d:%02d ", time.hour, time.minute) + DateText(time);
}

/// The label that the clip editor and the lists of recordings share but for its last part.
Text Label(const ClipEntry& clip, std::uint32_t mode, const Text& place) {
    switch (mode) {
        case 0:
            return DurationText(clip) + u" " + TimeDateText(clip.fileTime);
        case 1:
            return TimeDateText(clip.fileTime);
        case 2:
            return DateText(clip.fileTime) + u" " + place;
        default:
            return place;
    }
}

}  // namespace

void UpdateClipTexts(ClipEntry& clip, std::uint32_t descriptionMode) {
    clip.lengthText = DurationText(clip);
    clip.timeDateText = TimeDateText(clip.fileTime);
    clip.location = clip.BasePath();
    clip.description = Label(clip, descriptionMode, clip.folder);
}

Text RecordingLabel(const ClipEntry& clip, std::uint32_t listDisplay) {
    return Label(clip, listDisplay, clip.name);
}

Text TotalLengthText(std::uint32_t periods, std::uint32_t periodsPerSecond) {
    const std::uint32_t minutes = periods / (60 * periodsPerSecond);
    const std::uint32_t seconds = periods / periodsPerSecond - 60 * minutes;
    const std::uint32_t hundredths = periods % periodsPerSecond * (100 / periodsPerSecond);
    return FormatText("%2u:%02us.%02u", minutes, seconds, hundredths);
}

}  // namespace orma
