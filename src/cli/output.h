#pragma once

#include <nlohmann/json.hpp>

#include "base/text.h"

namespace orma::cli {

/// What a command prints: fields in their order.
using Json = nlohmann::ordered_json;

/// A text as a JSON string; what is not valid Unicode is replaced.
[[nodiscard]] Json ToJson(TextView text);
[[nodiscard]] Json ToJson(const std::string& bytes8Bit);

/// Prints a value: as JSON, or for people as "name: value" lines, indented by depth.
void Print(const Json& value, bool asJson);

}  // namespace orma::cli
