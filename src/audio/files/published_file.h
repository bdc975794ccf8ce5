#pragma once

#include "audio/files/writer_context.h"
#include "stream/jstream_file.h"

namespace orma {

/// How a publication beside the project comes to stand under its final name: it grows under
/// "<final name>.tmp" and is renamed when it is complete and wanted. Otherwise nothing is left of
/// it, and an older file of the final name stays as it was. UI thread.
class PublishedFile {
  public:
    /// `context` outlives the object.
    explicit PublishedFile(WriterContext& context) : context_(context) {}

    /// The final name: "<recording folder>pub_<name>.wav", or for an MP2 project with the
    /// extension that the settings give to published MP2.
    [[nodiscard]] static Text FinalPath(const WriterContext& context, const Text& name);

    /// Opens `stream` on the temporary file (shows there) and resets the context's outcome. While
    /// one is open that one is ended instead (reported), and the answer is false.
    [[nodiscard]] bool Begin(JStreamFile& stream, const Text& name);

    /// Everything has been written.
    void SetFinished() { finished_ = true; }

    /// Closes `stream` and tells the context: keeps the file when it is finished, nothing failed
    /// and the user did not cancel; removes it otherwise. Does nothing after the first time.
    void End(JStreamFile& stream);

  private:
    [[nodiscard]] Text TemporaryPath() const { return path_ + u".tmp"; }
    [[nodiscard]] bool Commit(JStreamFile& stream);

    WriterContext& context_;
    Text path_;  // empty: none begun
    bool finished_ = false;
};

}  // namespace orma
