#pragma once

#include <QString>

// Texts that come from the network can be any length; where one is shown it is cut here, at a
// character boundary, with an ellipsis, so that no panel, row or dialog has to lay out megabytes.
QString boundedForDisplay(const QString &text, qsizetype maximumLength);
