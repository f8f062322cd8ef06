#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

// The popover's tabs and the four things a tab can show: one set for C++ and QML alike.
namespace Popover {
Q_NAMESPACE
QML_ELEMENT

enum class Tab { Results, Today, Fixtures };
Q_ENUM_NS(Tab)

// Tested in this order.
enum class Content { Loading, Error, List, Empty };
Q_ENUM_NS(Content)

} // namespace Popover
