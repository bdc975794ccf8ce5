#pragma once

namespace orma {

/// How a job ended, for callers that must not claim more than was verified.
enum class PublishOutcome {
    kRefused,     // a check before the job failed, or its dialog was cancelled; nothing was sent
    kPublished,   // delivered and confirmed
    kUnverified,  // sent to its end, but whether it is whole could not be confirmed; the user knows
    kCancelled,   // ended early by the user, who was told
    kFailed,      // reported; it was not, or not wholly, delivered
};

}  // namespace orma
