#pragma once
// Error boxes, for processes that have somebody to read them.

#include <functional>
#include <string>

namespace zavrel {

using MessageBoxHandler =
    std::function<void(const std::u16string& title, const std::u16string& text)>;

/// From now on texts go to the handler and no box is shown; an empty handler ends this.
void SetMessageBoxHandler(MessageBoxHandler handler);

/// From now on no box is shown by this library or by any other of this process that shares this
/// code, but handlers get their texts.
void SuppressErrorBoxes();

/// Shows a box with the error icon and no owner window, to which the thread's windows give way, and
/// waits until the user closes it. Excel may calculate meanwhile.
/// True when the user or the handler got the text. False, at once, in a process that has nobody to
/// read a box: one without a visible window station (a service), one that runs with the environment
/// variable ZAVREL_NO_MESSAGE_BOX set to anything, or any outside Windows. The caller then writes
/// the text elsewhere.
bool ShowErrorBox(const std::u16string& title, const std::u16string& text);

}  // namespace zavrel
