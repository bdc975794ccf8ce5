#pragma once

#include <cstdint>

namespace orma {

/// The menu commands by their numbers.
enum class Command : std::uint32_t {
    kRecorder = 40007,
    kEditor = 40008,
    kClipEditor = 40009,
    kEditText = 40010,
    kAbout = 40011,
    kPublishClip = 40020,
    kExit = 40024,
    kOpenProject = 40025,
    kNewProject = 40026,
    kDelete = 40028,
    kListView = 40029,
    kCropBegin = 40033,
    kCropEnd = 40034,
    kSaveSelection = 40036,
    kPublishClipList = 40038,
    kOpenClip = 40039,
    kCutBegin = 40041,
    kCutEnd = 40042,
    kMark = 40043,
    kNone = 40044,
    kCopyToClipEditor = 40047,
    kInputOptions = 40049,
    kClipToFile = 40052,
    kClipListToFile = 40054,
    kImage = 40055,
    kRecord = 40057,
    kFastClip = 40062,
    kFastClipList = 40063,
    kRecentProject = 40100,  // the first of RecentProjects::kMost in a row
    kShortcuts = 40200,
};

}  // namespace orma
