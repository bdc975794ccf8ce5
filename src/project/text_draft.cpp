#include "project/text_draft.h"

#include <string_view>

#include "stream/whole_file.h"

namespace orma {
namespace {

Text TextDraftPath(const Text& projectFilePath) {
    return projectFilePath + u".text";
}

}  // namespace

Text ReadTextDraft(FileServices services, const Text& projectFilePath) {
    const Text path = TextDraftPath(projectFilePath);
    if (!services.storage.Exists(path)) return {};
    const std::optional<Bytes> bytes = ReadWholeFile(services, path);
    if (!bytes) return {};
    return FromUtf8({reinterpret_cast<const char*>(bytes->data()), bytes->size()});
}

bool WriteTextDraft(FileServices services, const Text& projectFilePath, const Text& text) {
    const Text path = TextDraftPath(projectFilePath);
    if (!text.empty()) return ReplaceWholeFile(services, path, AsBytes(ToUtf8(text)));
    if (!services.storage.Exists(path)) return true;
    const SystemError error = services.storage.Delete(path);
    if (error != 0) services.report.ReportSystemFailure(u"DeleteFile", error);
    return error == 0;
}

}  // namespace orma
