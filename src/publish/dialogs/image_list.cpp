#include "publish/dialogs/image_list.h"

#include <limits>

namespace orma {
namespace {

/// Takes the size of a file that can be opened and sent; false when it cannot (reported).
bool Measure(FileServices files, ImageList::Image& image) {
    std::unique_ptr<StorageFile> file;
    SystemError error = files.storage.Open(image.path, {}, file);
    if (error == 0) error = file->Size(image.bytes);
    if (error != 0) {
        files.report.ReportSystemFailure(u"Cannot open file : " + image.path, error);
        return false;
    }
    // Streams count in 32 bits.
    if (image.bytes <= std::numeric_limits<std::uint32_t>::max()) return true;
    files.report.ShowError(u"Too large to send (4 GB):\n" + image.path);
    return false;
}

}  // namespace

bool ImageList::Add(FileServices files, const Text& path) {
    if (images_.size() == kCapacity) {
        files.report.ShowError(FormatText("No more than %d images.", static_cast<int>(kCapacity)));
        return false;
    }
    Image image{path};
    if (!Measure(files, image)) return false;
    images_.push_back(std::move(image));
    return true;
}

void ImageList::Remove(std::size_t index) {
    if (index < images_.size()) images_.erase(images_.begin() + static_cast<std::ptrdiff_t>(index));
}

void ImageList::Refresh(FileServices files) {
    std::erase_if(images_, [&](Image& image) { return !Measure(files, image); });
}

std::uint64_t ImageList::TotalBytes() const {
    std::uint64_t bytes = 0;
    for (const Image& image : images_)
        bytes += image.bytes;
    return bytes;
}

}  // namespace orma
