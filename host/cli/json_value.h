#pragma once

#include <nlohmann/json.hpp>

#include "host/workbook/value.h"

namespace zavhost {

/// Numbers as numbers, texts as texts, booleans, blanks as null; an error as {"error": "#N/A"}.
nlohmann::ordered_json ToJson(const Value& value);

}  // namespace zavhost
