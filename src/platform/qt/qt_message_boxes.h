#pragma once

#include "platform/message_boxes.h"

namespace orma {

/// Modal boxes over the active window. Escape, and closing a box, mean its second button. While a
/// box is open the event loop goes on: devices and timers are served.
class QtMessageBoxes : public MessageBoxes {
  public:
    BoxAnswer Show(const MessageBox& box) override;
};

}  // namespace orma
