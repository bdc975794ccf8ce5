#pragma once

#include "audio/files/writer_context.h"
#include "stream/jstream_file.h"

namespace orma {

/// A WAV take on its way to storage: a 44-byte header, then PCM in blocks of 64 KiB, the sizes in
/// the header patched after each. What is staged lies in the take's journal meanwhile. In
/// append-per-block mode the file is closed between blocks. UI thread.
class JStreamWrWavFile : public JStreamFile {
  public:
    /// `context` outlives the take.
    explicit JStreamWrWavFile(WriterContext& context);

    /// Creates "<recording folder><name>.wav" with its header. While a take is open this reports
    /// its path and " : File is open", closes that take, and creates nothing.
    void OpenTake(const Text& name);

    /// Stages PCM and writes every full block.
    void WriteTake(ByteSpan pcm);

    /// Writes what is staged, sets the sizes in the header, closes; the take is then on the medium.
    /// When storage failed meanwhile, the take is repaired as far as storage now allows. Does
    /// nothing when the file has vanished. The journal stays, see TakeJournal.
    void CloseTake();

    /// Open and good; in append-per-block mode good alone.
    [[nodiscard]] bool IsHealthy() const;

  private:
    [[nodiscard]] WavHeader Header() const;
    void WriteBlock(ByteSpan block);
    void PutBlock(ByteSpan block);
    void PatchSizes();

    WriterContext& context_;
    Text path_;  // empty: no take
    bool appendPerBlock_ = false;
};

}  // namespace orma
