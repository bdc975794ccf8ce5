#include "project/sheet_change.h"

#include "audio/files/vu_file.h"

namespace orma {

SheetChange::SheetChange(FileServices services, CurrentRecording& recording)
    : services_(services),
      recording_(recording),
      marks_(recording.sheet.marks),
      cuts_(recording.sheet.cuts) {}

bool SheetChange::Commit() {
    if (recording_.sheet.levels.empty())
        services_.report.ShowError(u"The recording has no levels: nothing was changed.");
    else if (WriteVuFile(services_, recording_.levelPath, recording_.sheet))
        return true;
    recording_.sheet.marks = std::move(marks_);
    recording_.sheet.cuts = std::move(cuts_);
    return false;
}

}  // namespace orma
