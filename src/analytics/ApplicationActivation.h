#pragma once

#include <functional>

class QObject;

// Calls back when the application stops or starts being the active one (on Linux: one of its
// windows gains or loses the focus). Nothing without a GUI application.
void followApplicationActivation(QObject *context, std::function<void(bool active)> changed);
