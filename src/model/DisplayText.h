#pragma once

#include <QString>

enum class DisplayCut { AnyCharacter, BetweenWords };

// Texts that come from the network can be any length; where one is shown it is cut here, at a
// character boundary (or before the last word that does not fit, where there is one), with an
// ellipsis, so that no panel, row or dialog has to lay out megabytes.
QString boundedForDisplay(const QString &text, qsizetype maximumLength,
                          DisplayCut cut = DisplayCut::AnyCharacter);
