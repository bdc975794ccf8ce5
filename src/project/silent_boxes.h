#pragma once

#include "platform/message_boxes.h"

namespace orma {

/// Swallows the boxes of a check that is to stay silent; the trace keeps their texts.
class SilentBoxes : public MessageBoxes {
  public:
    BoxAnswer Show(const MessageBox&) override { return BoxAnswer::kOk; }
};

}  // namespace orma
