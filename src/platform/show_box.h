#pragma once
// The part of message_box.cpp that depends on the system.

#include <string>

namespace zavrel {

bool SystemHasAReader();
/// False if no box could be opened.
bool ShowSystemErrorBox(const std::u16string& title, const std::u16string& text);

}  // namespace zavrel
