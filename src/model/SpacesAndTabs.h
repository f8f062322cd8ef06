#pragma once

#include <QString>

// The text without leading and trailing spaces and tabs; line breaks and other white space stay.
QString trimSpacesAndTabs(const QString &text);
