#pragma once

#include "audio/files/writer_context.h"
#include "stream/jstream_file.h"

namespace orma {

/// An MP2 take on its way to storage: frames without any header. What the encoder's output block
/// holds lies in the take's journal meanwhile. In append-per-block mode the file is closed between
/// blocks. UI thread.
class JStreamWrMP2File : public JStreamFile {
  public:
    /// `context` outlives the take.
    explicit JStreamWrMP2File(WriterContext& context);

    /// While a take is open, reports its path and " : File is open" and returns true: the caller
    /// then flushes its encoder, closes that take and opens nothing.
    [[nodiscard]] bool RefuseWhileOpen();

    /// Creates "<recording folder><name>.mp2"; in append-per-block mode a file of that name is
    /// continued.
    void OpenTake(const Text& name);

    /// Keeps a frame that the encoder has put into its output block.
    void KeepFrame(ByteSpan frame) { context_.journal.Append(frame); }

    /// Writes or appends encoded bytes.
    void PutTake(ByteSpan encoded);

    /// Closes; the take is then on the medium. When storage failed meanwhile, it is repaired as far
    /// as storage now allows. The journal stays, see TakeJournal.
    void CloseTake();

    /// Open and good; in append-per-block mode good alone.
    [[nodiscard]] bool IsHealthy() const;

  private:
    WriterContext& context_;
    Text path_;  // empty: no take
    bool appendPerBlock_ = false;
};

}  // namespace orma
