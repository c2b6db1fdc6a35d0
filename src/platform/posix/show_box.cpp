#include "platform/show_box.h"

namespace zavrel {

bool SystemHasAReader() { return false; }

bool ShowSystemErrorBox(const std::u16string&, const std::u16string&) { return false; }

}  // namespace zavrel
