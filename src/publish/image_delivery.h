#pragma once

#include <vector>

#include "publish/dialogs/image_list.h"
#include "publish/image_write.h"
#include "publish/publish_outcome.h"
#include "publish/publish_patience.h"

namespace orma {

/// One local image and the name under which it is published.
struct NamedImage {
    ImageList::Image image;
    Text name;
};

/// Names for the images: "<base name>_01" and so on with each one's extension, or its own file name
/// when `keepNames`; of several with one name the second becomes "<name>_02" and so on.
[[nodiscard]] std::vector<NamedImage> NamedImages(const ImageList& images, const Text& baseName,
                                                  bool keepNames);

/// Sends what goes along with the sound: images and the project's text. The first failure ends it,
/// and the user learns which file is not there. All references outlive it. UI thread.
class ImageDelivery {
  public:
    ImageDelivery(FileServices files, PublishProgress& progress, PublishPatience& patience,
                  JStreamImageWrite& writer)
        : files_(files), progress_(progress), patience_(patience), writer_(writer) {}

    [[nodiscard]] PublishOutcome SendImages(const std::vector<NamedImage>& images);

    /// `text` in 8 bits; no terminating zero is sent.
    [[nodiscard]] PublishOutcome SendText(const Text& name, const std::string& text);

  private:
    static constexpr std::uint32_t kBlockBytes = 16384;

    /// False also when the file does not have the `bytes` that it was chosen with.
    [[nodiscard]] bool Copy(JStreamFile& file, std::uint64_t bytes);
    [[nodiscard]] PublishOutcome Failed(const Text& name);

    FileServices files_;
    PublishProgress& progress_;
    PublishPatience& patience_;
    JStreamImageWrite& writer_;
    std::uint64_t done_ = 0;
    std::uint64_t total_ = 0;
};

}  // namespace orma
