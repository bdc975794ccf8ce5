#include "cli/output.h"

#include <algorithm>
#include <cstdio>

namespace orma::cli {
namespace {

std::string Scalar(const Json& value) {
    if (value.is_string()) return value.get<std::string>();
    return value.dump();
}

/// True for lists of numbers and of short words, which stand on one line.
bool FitsOneLine(const Json& list) {
    constexpr std::size_t kLongWord = 16;
    return std::none_of(list.begin(), list.end(), [](const Json& element) {
        return element.is_structured() ||
               (element.is_string() && element.get_ref<const std::string&>().size() > kLongWord);
    });
}

void PrintLines(const Json& value, int depth) {
    const std::string indent(static_cast<std::size_t>(depth) * 2, ' ');
    std::size_t widest = 0;
    if (value.is_object()) {
        for (const auto& [name, field] : value.items())
            if (!field.is_structured()) widest = std::max(widest, name.size());
    }
    std::size_t number = 0;
    for (const auto& [name, field] : value.items()) {
        const std::string label = value.is_array() ? std::to_string(++number) : name;
        if (field.is_array() && !field.empty() && FitsOneLine(field)) {
            std::string line;
            for (const Json& element : field)
                line += (line.empty() ? "" : ", ") + Scalar(element);
            std::printf("%s%s: %s\n", indent.c_str(), label.c_str(), line.c_str());
        } else if (field.is_structured() && field.empty()) {
            std::printf("%s%s: none\n", indent.c_str(), label.c_str());
        } else if (field.is_structured()) {
            std::printf("%s%s:\n", indent.c_str(), label.c_str());
            PrintLines(field, depth + 1);
        } else if (value.is_array()) {
            std::printf("%s%s\n", indent.c_str(), Scalar(field).c_str());
        } else {
            std::printf("%s%-*s  %s\n", indent.c_str(), static_cast<int>(widest + 1),
                        (label + ":").c_str(), Scalar(field).c_str());
        }
    }
}

}  // namespace

Json ToJson(TextView text) {
    return ToUtf8(text);
}

Json ToJson(const std::string& bytes8Bit) {
    return ToUtf8(FromWindows1252(bytes8Bit));
}

void Print(const Json& value, bool asJson) {
    if (asJson) {
        // File names need not be Unicode; what is not is shown as the replacement character.
        const auto replace = Json::error_handler_t::replace;
        std::printf("%s\n", value.dump(2, ' ', false, replace).c_str());
    } else if (value.is_structured()) {
        PrintLines(value, 0);
    } else {
        std::printf("%s\n", Scalar(value).c_str());
    }
}

}  // namespace orma::cli
