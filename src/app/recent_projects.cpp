#include "app/recent_projects.h"

#include <algorithm>
#include <string_view>

#include "stream/file_replacement.h"

namespace orma {

RecentProjects::RecentProjects(Storage& storage, Text path)
    : report_(boxes_, storage), files_{storage, report_}, path_(std::move(path)) {}

void RecentProjects::Load() {
    paths_.clear();
    if (!files_.storage.Exists(path_)) return;
    JStreamFile file(files_, path_, true);
    const std::uint32_t bytes = file.GetSize();
    if (!file.IsOpen() || bytes > kMostBytes) return;  // too long to be ours
    std::string text(bytes, '\0');
    file.Read(text.data(), bytes);
    if (!file.IsOpen()) return;
    for (std::string_view rest = text; !rest.empty() && paths_.size() < kMost;) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        Text path = FromUtf8(line);
        if (!path.empty() && !std::ranges::count(paths_, path)) paths_.push_back(std::move(path));
    }
}

void RecentProjects::Add(const Text& projectPath) {
    if (projectPath.empty() || projectPath.find(u'\n') != Text::npos) return;
    if (!paths_.empty() && paths_.front() == projectPath) return;
    std::erase(paths_, projectPath);
    paths_.insert(paths_.begin(), projectPath);
    if (paths_.size() > kMost) paths_.resize(kMost);
    Save();
}

void RecentProjects::Remove(const Text& projectPath) {
    if (std::erase(paths_, projectPath) > 0) Save();
}

void RecentProjects::Save() {
    std::string text;
    for (const Text& path : paths_)
        text += ToUtf8(path) + '\n';
    FileReplacement file(files_, path_);
    file.Stream().Write(text.data(), static_cast<std::uint32_t>(text.size()));
    (void)file.Commit();
}

}  // namespace orma
