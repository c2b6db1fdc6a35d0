#include "platform/message_box.h"

#include <mutex>
#include <utility>

#include "platform/show_box.h"

namespace zavrel {
namespace {

std::mutex handler_mutex;
MessageBoxHandler& Handler() {
  static MessageBoxHandler handler;
  return handler;
}

}  // namespace

void SetMessageBoxHandler(MessageBoxHandler handler) {
  const std::lock_guard guard(handler_mutex);
  Handler() = std::move(handler);
}

bool ShowErrorBox(const std::u16string& title, const std::u16string& text) {
  MessageBoxHandler handler;
  {
    const std::lock_guard guard(handler_mutex);
    handler = Handler();
  }
  if (!handler) return SystemHasAReader() && ShowSystemErrorBox(title, text);
  handler(title, text);
  return true;
}

}  // namespace zavrel
