#pragma once
// Error boxes, for processes with a user who can read them.

#include <functional>
#include <string>

namespace zavrel {

using MessageBoxHandler =
    std::function<void(const std::u16string& title, const std::u16string& text)>;

/// For tests: passes texts to the handler instead of showing boxes from now on; an empty handler
/// ends this.
void SetMessageBoxHandler(MessageBoxHandler handler);

/// From now on, neither this library nor any other library of this process that shares this code
/// shows boxes; handlers still receive their texts.
void SuppressErrorBoxes();

/// Shows a box with the error icon and without an owner window, disables the thread's windows and
/// waits until the user closes the box. Excel may calculate meanwhile. True if the user or the
/// handler received the text. Returns false at once if nobody could read a box: in a process
/// without a visible window station (a service), if the environment variable ZAVREL_NO_MESSAGE_BOX
/// is set to anything, and outside Windows. The caller then writes the text elsewhere.
bool ShowErrorBox(const std::u16string& title, const std::u16string& text);

}  // namespace zavrel
