#pragma once

#include <windows.h>

#include <string>

namespace zavrel {

/// The system's message for an error code, in UTF-8 and without a full stop.
std::string SystemMessage(DWORD error);

}  // namespace zavrel
