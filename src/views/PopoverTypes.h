#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

// The popover's tabs and the four things a tab can show: one set for C++ and QML alike.
namespace Popover {
Q_NAMESPACE
QML_ELEMENT
// Values are named with their enum in QML (Popover.Card.Error), so two enums may share a name.
Q_CLASSINFO("RegisterEnumClassesUnscoped", "false")

enum class Tab { Results, Today, Fixtures };
Q_ENUM_NS(Tab)

// Tested in this order.
enum class Content { Loading, Error, List, Empty };
Q_ENUM_NS(Content)

// What an opened row's scorecard area shows.
enum class Card { None, Loading, Error, Ready };
Q_ENUM_NS(Card)

} // namespace Popover
