#pragma once

#include <cstdint>
#include <span>

#include "base/text.h"

namespace orma {

/// What a control of a publish dialog is for; each implies the kind of control named beside it.
enum class DialogRole {
    kInfo,       // line of text
    kServer,     // combo box: accounts
    kRecipient,  // combo box: mail addresses, editable
    kSubject,    // edit
    kAttach,     // check box: images are sent
    kAdd,        // button: add an image
    kRemove,     // button: remove the marked image
    kClear,      // button: empty the image list
    kKeepNames,  // check box: images keep their own names
    kImages,     // list box
    kStart,      // button, the default one
    kCancel,     // button
};

/// One control: its number differs from dialog to dialog for one role, so dialogs are built and
/// read by role. An empty label is that of a control without one.
struct DialogControl {
    DialogRole role;
    int id;
    TextView label;
};

/// One of the publish dialogs, as windows are built from it.
struct DialogResource {
    int id;
    TextView title;
    std::span<const DialogControl> controls;  // in their order

    [[nodiscard]] bool Has(DialogRole role) const;
};

/// The dialog of that number: an odd one from 105 to 125, or its twin without "Start" and "Cancel"
/// one above. Null for any other number.
[[nodiscard]] const DialogResource* FindDialogResource(int id);

/// What decides which dialog comes before a publication.
struct DialogSituation {
    std::uint32_t method = 0;  // 1 e-mail via the outbox, 2 e-mail direct, otherwise FTP
    bool imagePublishing = false;
    bool serverChoice = false;
    std::size_t ftpServers = 0;  // entries that the FTP dialog would offer
    bool imagesOnly = false;     // images are published alone, without sound
};

/// The dialog to show; null when none is needed (FTP without anything to choose).
[[nodiscard]] const DialogResource* DialogBefore(const DialogSituation& situation);

}  // namespace orma
