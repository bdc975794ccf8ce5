#pragma once

#include "base/text.h"
#include "platform/patience.h"

namespace orma {

/// A message for the user's mail program.
struct OutboxLetter {
    Text recipient;
    Text subject;
    Text body;
    Text attachmentPath;  // absolute; must stay there until the user has sent the message
};

/// The user's mail program, if there is one. UI thread.
class MailOutbox {
  public:
    virtual ~MailOutbox() = default;

    /// True when there is something to hand letters to. It may still refuse one.
    [[nodiscard]] virtual bool HasMailProgram() = 0;

    /// Hands the letter over; true once the mail program has it, or is about to. Waits a few
    /// seconds at most.
    [[nodiscard]] virtual bool HandOver(const OutboxLetter& letter, Patience& patience) = 0;
};

}  // namespace orma
