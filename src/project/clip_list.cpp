#include "project/clip_list.h"

#include <algorithm>
#include <utility>

#include "project/same_path.h"

namespace orma {

void ClipList::Clear() {
    clips_.clear();
    current_ = -1;
}

std::int32_t ClipList::Insert(ClipEntry clip) {
    clip.end = 0;
    const std::int32_t index = current_ >= 0 && current_ <= Count() ? current_ : Count();
    clips_.insert(clips_.begin() + index, std::make_unique<ClipEntry>(std::move(clip)));
    return index;
}

std::int32_t ClipList::Append(ClipEntry clip) {
    clips_.push_back(std::make_unique<ClipEntry>(std::move(clip)));
    return Count() - 1;
}

std::int32_t ClipList::InsertAfterCurrent(ClipEntry clip) {
    const std::int32_t index = Has(current_) ? current_ + 1 : Count();
    clips_.insert(clips_.begin() + index, std::make_unique<ClipEntry>(std::move(clip)));
    return index;
}

void ClipList::Remove(std::int32_t index) {
    if (!Has(index)) return;
    clips_.erase(clips_.begin() + index);
    if (index < current_) --current_;
    current_ = std::min(current_, Count() - 1);
}

void ClipList::RemoveCurrent() {
    Remove(current_);
}

bool ClipList::RemoveClipsOf(const Text& basePath) {
    const ClipEntry* current = Current();
    const auto goes = [&](const auto& clip) { return SamePath(clip->BasePath(), basePath); };
    if (current != nullptr && SamePath(current->BasePath(), basePath)) current = nullptr;
    const bool removed = std::erase_if(clips_, goes) > 0;
    const auto found = std::ranges::find(clips_, current, &std::unique_ptr<ClipEntry>::get);
    current_ = found == clips_.end() ? -1 : static_cast<std::int32_t>(found - clips_.begin());
    return removed;
}

void ClipList::SwapCurrentWith(std::int32_t neighbour) {
    if (!Has(current_) || !Has(neighbour)) return;
    std::swap(clips_[static_cast<std::size_t>(current_)],
              clips_[static_cast<std::size_t>(neighbour)]);
    current_ = neighbour;
}

void ClipList::MoveCurrentUp() {
    SwapCurrentWith(current_ - 1);
}

void ClipList::MoveCurrentDown() {
    SwapCurrentWith(current_ + 1);
}

bool ClipList::SetCurrent(std::int32_t index) {
    if (!Has(index)) return false;
    current_ = index;
    return true;
}

ClipEntry* ClipList::Current() {
    return Has(current_) ? &At(current_) : nullptr;
}

std::uint32_t ClipList::TotalLength() const {
    std::uint32_t total = 0;
    for (const auto& clip : clips_)
        total += clip->length;
    return total;
}

}  // namespace orma
