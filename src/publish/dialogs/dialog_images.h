#pragma once

#include "publish/dialogs/publish_choices.h"

namespace orma {

/// The image part of a publish dialog. Its actions count at once, also when the dialog is cancelled
/// afterwards. UI thread.
class DialogImages {
  public:
    /// Opening a dialog measures the images anew; one that is gone leaves the list with a box.
    explicit DialogImages(DialogServices services);

    [[nodiscard]] const ImageList& List() const { return s_.choices.images; }

    /// Where the file dialog opens.
    [[nodiscard]] const Text& Folder() const { return s_.settings.ImageFolder; }

    /// "Add" with the chosen file: on success its folder becomes the image folder and the images
    /// are attached. False, and nothing changed, when the list refused it (reported).
    [[nodiscard]] bool Add(const Text& path);

    /// "Remove" with the marked line, and "Clear List".
    void Remove(std::size_t index) { s_.choices.images.Remove(index); }
    void Clear() { s_.choices.images.Clear(); }

    /// The image check box.
    [[nodiscard]] bool Attached() const { return s_.choices.imagesAttached; }
    void Attach(bool attached) { s_.choices.imagesAttached = attached; }

  private:
    DialogServices s_;
};

}  // namespace orma
