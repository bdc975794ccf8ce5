#pragma once

#include <cstdint>

#include "audio/files/audio_read.h"
#include "audio/files/writer_slot.h"
#include "publish/clip_sender.h"
#include "publish/publication.h"
#include "publish/publish_outcome.h"
#include "publish/publish_patience.h"

namespace orma {

/// What a delivery stands on; all outlive it.
struct AudioDeliveryServices {
    ReaderServices readers;
    WriterSlot& writers;  // works on the audio state of `readers`
    PublishProgress& progress;
    PublishPatience& patience;
};

/// How one publication goes out.
struct AudioDeliveryTerms {
    WriterKind writer = WriterKind::kBwfMp2File;
    Mp2Bitrate bitrate;            // what the writer encodes with
    std::uint64_t totalBytes = 0;  // of the published file
    bool autoResume = false;       // go on after a break without asking
};

/// Sends the sound of a publication through the writer, whose context has been filled in: one
/// attempt, and where it can be resumed (stored recordings of MP2, by FTP) as many as it takes.
///
///     attempt -- whole and confirmed ------------------------------> published
///        |   \-- whole, its size unknown or wrong -----------------> unverified (told)
///        |   \-- cancelled: the file is ended properly ------------> cancelled (told)
///        |   \-- a recording cannot be read -----------------------> failed
///        |   \-- the server knows no restart ----------------------> failed (told)
///        v
///     broken -- cannot be resumed, or the user does not want to ---> failed
///        |
///        '-- asked, or by itself: the next attempt. It begins at once when the last one brought
///            the file on, else a second later: a dead server must not be hammered.
///
/// UI thread; blocks until the end.
class AudioDelivery {
  public:
    AudioDelivery(AudioDeliveryServices services, const Publication& publication,
                  AudioDeliveryTerms terms);

    [[nodiscard]] PublishOutcome Run(const Text& baseName);

  private:
    enum class AttemptEnd { kOver, kBroken, kNoConnection };

    static constexpr std::uint32_t kPauseMs = 1000;

    [[nodiscard]] bool IsRemote() const;
    [[nodiscard]] bool CanResume() const;
    [[nodiscard]] JStreamAudioWrite& Writer() { return *s_.writers.Current(); }
    [[nodiscard]] WriterContext& Context() { return s_.writers.Context(); }
    [[nodiscard]] PublishOutcome Attempts(const Text& baseName);
    [[nodiscard]] AttemptEnd Attempt(const Text& baseName, bool first);
    [[nodiscard]] int OpenWriter(const Text& baseName, bool first);
    [[nodiscard]] SendEnd SendClips();
    [[nodiscard]] AttemptEnd EndCancelled();
    [[nodiscard]] AttemptEnd EndWhole();
    [[nodiscard]] bool WantsToGoOn();
    [[nodiscard]] PublishOutcome Broken(AttemptEnd end);
    [[nodiscard]] PublishOutcome Cancelled();

    AudioDeliveryServices s_;
    const Publication& publication_;
    AudioDeliveryTerms terms_;
    PublishOutcome outcome_ = PublishOutcome::kFailed;  // of an attempt that is over
    bool opened_ = false;                               // in the present attempt
    bool sentAll_ = false;
};

}  // namespace orma
