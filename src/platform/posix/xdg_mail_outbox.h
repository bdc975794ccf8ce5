#pragma once

#include <vector>

#include <sys/types.h>

#include "platform/mail_outbox.h"

namespace orma {

/// Hands letters to `xdg-email`, which opens the user's mail program with everything filled in; the
/// user presses Send there.
class XdgMailOutbox : public MailOutbox {
  public:
    [[nodiscard]] bool HasMailProgram() override;

    /// The tool may run for as long as the mail program does: when it has not failed within 5 s, it
    /// counts as done and goes on alone.
    [[nodiscard]] bool HandOver(const OutboxLetter& letter, Patience& patience) override;

  private:
    std::vector<pid_t> running_;
};

}  // namespace orma
