#include "DisplayText.h"

#include <QTextBoundaryFinder>

QString boundedForDisplay(const QString &text, qsizetype maximumLength)
{
    if (text.size() <= maximumLength)
        return text;
    // Step back to the start of a grapheme, so that no emoji or accent is cut in half.
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    graphemes.setPosition(maximumLength - 1);
    if (!graphemes.isAtBoundary())
        graphemes.toPreviousBoundary();
    return text.left(qMax<qsizetype>(0, graphemes.position())) + QChar(0x2026);
}
