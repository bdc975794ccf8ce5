#pragma once

#include "publish/dialogs/image_list.h"
#include "settings/settings_record.h"

namespace orma {

/// What the publish dialogs leave for the publish job and for the next dialog beside the settings:
/// it lives as long as the process and stands in no file.
struct PublishChoices {
    ImageList images;
    bool imagesAttached = false;  // the tick of the image check box
    Text recipient;               // of the last e-mail dialog that was started
    Text subject;
};

/// What a publish dialog stands on; all outlive it.
struct DialogServices {
    SettingsRecord& settings;  // the record in use, which Start changes
    PublishChoices& choices;
    FileServices files;
    const Text& programFolder;  // with its separator; "emails.txt" lies there
};

}  // namespace orma
