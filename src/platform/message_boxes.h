#pragma once

#include "base/text.h"

namespace orma {

enum class BoxIcon { kNone, kError, kWarning, kInformation, kQuestion };
enum class BoxButtons { kOk, kOkCancel, kYesNo };
enum class BoxAnswer { kOk, kCancel, kYes, kNo };

/// One modal message box, owned by the main window.
struct MessageBox {
    Text text;
    Text title = u"Error";
    BoxIcon icon = BoxIcon::kError;
    BoxButtons buttons = BoxButtons::kOk;
    bool secondIsDefault = false;  // Cancel or No is preselected
};

/// Shows modal boxes. A front end without a window prints them and answers questions from its
/// options.
class MessageBoxes {
  public:
    virtual ~MessageBoxes() = default;

    /// Shows the box and returns the button pressed. UI thread; blocks until it is answered.
    virtual BoxAnswer Show(const MessageBox& box) = 0;
};

}  // namespace orma
