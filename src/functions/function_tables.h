#pragma once
// The tables that the build makes from functions.json.

#include <span>

#include "frame/registration_row.h"

namespace zavrel {

std::span<const RegistrationRow> MainTable();
/// The tests that need the nonparametric companion.
std::span<const RegistrationRow> ExtensionTable();

}  // namespace zavrel
