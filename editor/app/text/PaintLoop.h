// Loops for work of some tenths of a second: the window goes on painting, but no one can use it.
#pragma once

#include <functional>

namespace zelk {

/// Calls it again and again, between what the window does, until it says that it is done.
void untilDone(const std::function<bool()>& work);
/// Calls it in a thread, and returns when that has ended. What it throws is thrown here.
void besideWindow(const std::function<void()>& work);

} // namespace zelk
