#pragma once

#include <memory>

#include "audio/files/audio_write.h"
#include "audio/files/writer_context.h"

namespace orma {

/// The kinds of writers, by number.
enum class WriterKind : int {
    kNone = 0,
    kWavFile = 1,
    kMp2File = 2,
    kFtp = 3,
    kWavFtp = 4,
    kMp2Ftp = 5,
    kBwfFtp = 6,
    kBwfEmail = 7,
    kBwfWavFile = 8,
    kBwfMp2File = 9,
};

/// Holds the one current writer: makes it, keeps it while the kind stays, replaces it. UI thread.
class WriterSlot {
  public:
    /// `context` outlives the slot.
    explicit WriterSlot(WriterContext& context) : context_(context) {}
    virtual ~WriterSlot() = default;
    WriterSlot(const WriterSlot&) = delete;
    WriterSlot& operator=(const WriterSlot&) = delete;

    /// Makes a writer of `kind` the current one; nothing happens when it is already. A kind that
    /// is not a writer leaves none, as does one whose services the context lacks.
    void SelectWriter(WriterKind kind);

    /// The current writer; null when there is none.
    [[nodiscard]] JStreamAudioWrite* Current() const { return writer_.get(); }
    [[nodiscard]] WriterKind Kind() const { return kind_; }
    [[nodiscard]] WriterContext& Context() { return context_; }

  protected:
    /// The factory; tests replace it to watch what a user of the slot does.
    [[nodiscard]] virtual std::unique_ptr<JStreamAudioWrite> Make(WriterKind kind);

  private:
    WriterContext& context_;
    WriterKind kind_ = WriterKind::kNone;
    std::unique_ptr<JStreamAudioWrite> writer_;
};

}  // namespace orma
