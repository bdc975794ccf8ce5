#include "publish/image_delivery.h"

#include <algorithm>
#include <utility>

#include "base/path.h"
#include "base/small_letter.h"

namespace orma {
namespace {

/// Files of one name would replace each other; on many servers case makes no difference.
bool HasName(const std::vector<NamedImage>& images, const Text& name) {
    return std::ranges::any_of(images, [&](const NamedImage& image) {
        return std::ranges::equal(image.name, name, {}, SmallLetter, SmallLetter);
    });
}

}  // namespace

std::vector<NamedImage> NamedImages(const ImageList& images, const Text& baseName, bool keepNames) {
    std::vector<NamedImage> named;
    int number = 0;
    for (const ImageList::Image& image : images.Images()) {
        const PathParts parts = SplitPath(image.path);
        const Text stem = keepNames ? parts.name : baseName + FormatText("_%.2d", ++number);
        Text name = stem + parts.extension;
        for (int copy = 2; HasName(named, name); ++copy)
            name = stem + FormatText("_%.2d", copy) + parts.extension;
        named.push_back({image, std::move(name)});
    }
    return named;
}

PublishOutcome ImageDelivery::SendImages(const std::vector<NamedImage>& images) {
    done_ = 0;
    total_ = 0;
    for (const NamedImage& image : images)
        total_ += image.image.bytes;
    progress_.SetText(u"  Publishing image...  ");
    progress_.SetRange(static_cast<std::uint32_t>(total_ / kBlockBytes));
    for (const NamedImage& image : images) {
        JStreamFile file(files_, image.image.path, true);
        if (!file.IsOpen()) return Failed(image.name);
        writer_.OpenNamed(image.name);
        const bool whole =
            writer_.IsGood() && Copy(file, image.image.bytes) && writer_.CloseNamed();
        if (!whole) return Failed(image.name);
    }
    return PublishOutcome::kPublished;
}

bool ImageDelivery::Copy(JStreamFile& file, std::uint64_t bytes) {
    Bytes block(kBlockBytes);
    const std::uint64_t start = done_;
    for (std::uint32_t left = file.GetSize(); left > 0;) {
        if (!patience_.GoOn()) return false;
        const std::uint32_t count = std::min(left, kBlockBytes);
        file.Read(block.data(), count);
        if (!file.IsOpen() || file.Has(JStream::kAtEnd)) return false;
        writer_.WriteRaw(ByteSpan(block).first(count));
        if (!writer_.IsGood()) return false;
        left -= count;
        const std::uint64_t before = done_;
        done_ += count;
        const auto steps = static_cast<std::uint32_t>(done_ / kBlockBytes - before / kBlockBytes);
        if (steps > 0) progress_.Step(steps);
        progress_.SetBytes(done_, total_);
    }
    return file.IsOpen() && done_ - start == bytes;
}

PublishOutcome ImageDelivery::SendText(const Text& name, const std::string& text) {
    constexpr std::uint32_t kSteps = 10;
    progress_.SetText(u"  Publishing text...  ");
    progress_.SetRange(kSteps);
    writer_.OpenNamed(name);
    if (writer_.IsGood()) writer_.WriteRaw(AsBytes(text));
    if (!writer_.IsGood() || !writer_.CloseNamed()) return Failed(name);
    progress_.Step(kSteps);
    progress_.SetBytes(text.size(), text.size());
    return PublishOutcome::kPublished;
}

/// A cancelled file ends here as well: what came of it is on the server, of a mail nothing.
PublishOutcome ImageDelivery::Failed(const Text& name) {
    writer_.Abort();
    if (!patience_.GoOn()) {
        files_.report.Boxes().Show(
            {.text = u"Publishing was cancelled.\nThe publication is incomplete.",
             .title = u"Info",
             .icon = BoxIcon::kInformation});
        return PublishOutcome::kCancelled;
    }
    files_.report.ShowError(u"Not published:\n" + name);
    return PublishOutcome::kFailed;
}

}  // namespace orma
