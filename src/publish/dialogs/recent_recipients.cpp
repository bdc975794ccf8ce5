#include "publish/dialogs/recent_recipients.h"

#include <algorithm>
#include <string>

#include "stream/whole_file.h"

namespace orma {
namespace {

constexpr std::size_t kMaxLine = 256;  // characters that count of a line
// A longer file is not ours: five addresses fill an eighth of it.
constexpr std::uint32_t kMaxBytes = 16384;

}  // namespace

RecentRecipients::RecentRecipients(FileServices files, const Text& path)
    : files_(files), path_(path) {
    entries_.fill(u"Empty");
    if (!files_.storage.Exists(path_)) return;
    JStreamFile file(files_, path_, true);
    std::string bytes(std::min(file.GetSize(), kMaxBytes), '\0');
    file.Read(bytes.data(), static_cast<std::uint32_t>(bytes.size()));
    unread_ = !file.IsOpen();
    if (unread_) return;
    std::size_t count = 0;
    for (std::size_t at = 0; at < bytes.size() && count < kCount;) {
        const std::size_t end = std::min(bytes.find_first_of("\r\n", at), bytes.size());
        if (end > at)
            entries_[count++] = FromWindows1252(bytes.substr(at, std::min(end - at, kMaxLine)));
        at = end + 1;
    }
}

bool RecentRecipients::Store(const Text& recipient) {
    if (unread_) return false;
    std::string bytes = ToWindows1252(recipient) + "\n";
    for (const Text& entry : entries_)
        if (entry != recipient) bytes += ToWindows1252(entry) + "\n";
    return ReplaceWholeFile(files_, path_, AsBytes(bytes));
}

}  // namespace orma
