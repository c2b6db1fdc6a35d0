#pragma once
// What message_box.cpp needs of each system.

#include <string>

namespace zavrel {

bool SystemHasAReader();
/// False when no box could be opened.
bool ShowSystemErrorBox(const std::u16string& title, const std::u16string& text);

}  // namespace zavrel
