#include "publish/bext_fields.h"

#include <algorithm>
#include <string_view>

#include "base/text.h"

namespace orma {
namespace {

template <std::size_t Size>
void Put(std::array<char, Size>& field, std::string_view text) {
    field.fill(0);
    std::ranges::copy(text.substr(0, Size), field.begin());
}

}  // namespace

std::string OriginationDate(const DateTime& recorded) {
    return Format("%4d-%2d-%2d", recorded.year, recorded.month, recorded.day).substr(0, 10);
}

std::string OriginationTime(const DateTime& recorded) {
    return Format("%2d:%2d:%2d", recorded.hour, recorded.minute, recorded.second).substr(0, 8);
}

BwfHead BextFields(const std::string& description, const DateTime& recorded, std::uint16_t channels,
                   std::uint32_t ticks, const OriginatorCodes& codes) {
    BwfHead head = BwfHead::Template();
    Put(head.description, std::string_view(description).substr(0, head.description.size() - 1));
    Put(head.originationDate, OriginationDate(recorded));
    Put(head.originationTime, OriginationTime(recorded));
    head.timeReferenceLow = TimeReference(recorded);
    FillUmid(head.umid, channels, recorded, ticks, codes);
    return head;
}

}  // namespace orma
