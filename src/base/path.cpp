#include "base/path.h"

#include <filesystem>

namespace orma {
namespace {

constexpr auto kSeparator = static_cast<char16_t>(std::filesystem::path::preferred_separator);

}  // namespace

PathParts SplitPath(TextView path) {
    const std::size_t separator = path.find_last_of(u"/\\");
    const std::size_t nameStart = separator == TextView::npos ? 0 : separator + 1;
    const TextView file = path.substr(nameStart);
    const std::size_t dot = file.rfind(u'.');
    const std::size_t nameLength = dot == TextView::npos ? file.size() : dot;
    return {Text(path.substr(0, nameStart)), Text(file.substr(0, nameLength)),
            Text(file.substr(nameLength))};
}

Text WithExtension(TextView path, TextView extension) {
    const PathParts parts = SplitPath(path);
    return parts.folder + parts.name + Text(extension);
}

Text AsFolder(TextView folder) {
    Text out(folder);
    if (!out.empty() && out.back() != u'/' && out.back() != u'\\') out.push_back(kSeparator);
    return out;
}

}  // namespace orma
