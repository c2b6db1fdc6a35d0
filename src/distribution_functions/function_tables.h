#pragma once
// The table that the build makes from functions.json.

#include <span>

#include "frame/registration_row.h"

namespace zavrel {

std::span<const RegistrationRow> MainTable();

}  // namespace zavrel
