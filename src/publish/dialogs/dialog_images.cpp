#include "publish/dialogs/dialog_images.h"

#include "base/path.h"
#include "base/trace.h"

namespace orma {

DialogImages::DialogImages(DialogServices services) : s_(services) {
    s_.choices.images.Refresh(s_.files);
}

bool DialogImages::Add(const Text& path) {
    Trace("IDC_IMAGECHOOSE,IFilename=%s", ToUtf8(path).c_str());
    if (!s_.choices.images.Add(s_.files, path)) return false;
    s_.settings.ImageFolder = SplitPath(path).folder;
    s_.choices.imagesAttached = true;
    return true;
}

}  // namespace orma
