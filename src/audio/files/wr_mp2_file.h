#pragma once

#include "audio/files/writer_context.h"
#include "stream/jstream_file.h"

namespace orma {

/// An MP2 take on its way to storage: frames without any header. In append-per-block mode the file
/// is closed between blocks. UI thread.
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

    /// Writes or appends encoded bytes.
    void PutTake(ByteSpan encoded);

    void CloseTake();

    /// Open and good; in append-per-block mode good alone.
    [[nodiscard]] bool IsHealthy() const;

  private:
    WriterContext& context_;
    Text path_;  // empty: no take
    bool appendPerBlock_ = false;
};

}  // namespace orma
