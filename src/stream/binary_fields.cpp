#include "stream/binary_fields.h"

#include <algorithm>
#include <cstring>

#include "base/trace.h"

namespace orma {

void FieldReader::Take(std::span<std::uint8_t> into) {
    const std::size_t got = std::min(into.size(), rest_.size());
    if (got < into.size()) NoteEnd(into.size());
    std::copy_n(rest_.begin(), got, into.begin());
    rest_ = rest_.subspan(got);
}

void FieldReader::NoteEnd(std::size_t wanted) {
    if (!noted_) Trace("EOF nr %zu n %zu", rest_.size(), wanted);
    noted_ = true;
}

void FieldReader::Get(Text& text, std::size_t maxUnits) {
    text.clear();
    std::uint32_t count = 0;
    Get(count);
    if (count == 0) return;
    const std::size_t bytes = 2 * (std::size_t{count} + 1);
    if (bytes > rest_.size()) {
        NoteEnd(bytes);
        rest_ = {};
        return;
    }
    text.resize(count);
    std::memcpy(text.data(), rest_.data(), 2 * std::size_t{count});
    rest_ = rest_.subspan(bytes);
    text.resize(std::min({text.find(u'\0'), text.size(), maxUnits}));
}

void FieldWriter::PutTag(std::string_view tag) {
    const ByteSpan bytes = AsBytes(tag);
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
}

void FieldWriter::Put(TextView text) {
    Put(static_cast<std::uint32_t>(text.size()));
    if (text.empty()) return;
    for (const char16_t unit : text)
        Put(unit);
    Put(u'\0');
}

}  // namespace orma
