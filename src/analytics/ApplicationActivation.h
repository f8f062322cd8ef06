#pragma once

#include <functional>

class QObject;

// Whether the application is the active one (on Linux: one of its windows has the focus).
// Without a GUI application there is nothing to be inactive, so always.
bool applicationIsActive();

// Calls back when the application stops or starts being the active one.
void followApplicationActivation(QObject *context, std::function<void(bool active)> changed);
