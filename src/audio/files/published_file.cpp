#include "audio/files/published_file.h"

namespace orma {

Text PublishedFile::FinalPath(const WriterContext& context, const Text& name) {
    const Text extension = context.audio.mp2 ? u"." + context.publishExtension : u".wav";
    return context.recordingFolder + u"pub_" + name + extension;
}

bool PublishedFile::Begin(JStreamFile& stream, const Text& name) {
    if (stream.Has(JStream::kOpen)) {
        context_.files.report.ShowError(path_ + u" : File is open");
        End(stream);
        return false;
    }
    context_.committed = false;
    context_.publishedPath.clear();
    finished_ = false;
    path_ = FinalPath(context_, name);
    stream.Open(TemporaryPath(), false);
    // A temporary file that cannot be opened is somebody else's; it is not removed.
    if (!stream.IsOpen()) path_.clear();
    return true;
}

bool PublishedFile::Commit(JStreamFile& stream) {
    if (!finished_ || context_.cancelled) return false;
    stream.Flush();
    const bool complete = stream.IsOpen();
    stream.Close();
    if (!complete || !stream.Has(JStream::kGood)) return false;
    const SystemError error = context_.files.storage.Rename(TemporaryPath(), path_);
    if (error != 0) context_.files.report.ReportSystemFailure(u"MoveFile", error);
    return error == 0;
}

void PublishedFile::End(JStreamFile& stream) {
    if (path_.empty()) return;
    if (Commit(stream)) {
        context_.committed = true;
        context_.publishedPath = path_;
    } else {
        stream.Close();
        // One that cannot be removed either stays under its temporary name and harms nobody.
        (void)context_.files.storage.Delete(TemporaryPath());
    }
    path_.clear();
}

}  // namespace orma
