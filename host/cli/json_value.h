#pragma once

#include <nlohmann/json.hpp>
#include <string>

#include "host/workbook/value.h"

namespace zavhost {

/// Numbers as numbers, texts as texts, booleans, blanks as null; an error as {"error": "#N/A"}.
nlohmann::ordered_json ToJson(const Value& value);

/// Its text, indented by 2 or on one line; what is no UTF-8 in it is replaced, and what would act
/// on a terminal is escaped.
enum class JsonLayout { kIndented, kOneLine };
std::string JsonText(const nlohmann::ordered_json& json, JsonLayout layout);

}  // namespace zavhost
