#pragma once

#include <optional>

#include "app/application.h"
#include "publish/publish_job.h"
#include "shell/note.h"

namespace orma {

/// What a job delivered that has just ended as published; it says no more than was confirmed.
/// Nothing for mail via the outbox: a box tells of each message.
[[nodiscard]] std::optional<Note> NoteOf(const PublishJob& job, const Application& app);

}  // namespace orma
