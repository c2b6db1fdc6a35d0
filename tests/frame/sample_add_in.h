#pragma once
// The add-in of these tests, whose tables have a row of each kind.

#include "frame/add_in.h"

namespace zavrel::tests {

/// One is always registered, the others for the applications 5 and 7.
std::span<const RegistrationRow> SampleFunctions();
/// For application 5. What these need is not available to ThisAddIn().
std::span<const RegistrationRow> SampleExtension();

}  // namespace zavrel::tests
