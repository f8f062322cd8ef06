#include "DisplayText.h"

#include <QTextBoundaryFinder>

QString boundedForDisplay(const QString &text, qsizetype maximumLength, DisplayCut cut)
{
    if (text.size() <= maximumLength)
        return text;
    // Step back to the start of a grapheme, so that no emoji or accent is cut in half.
    QTextBoundaryFinder graphemes(QTextBoundaryFinder::Grapheme, text);
    graphemes.setPosition(maximumLength - 1);
    if (!graphemes.isAtBoundary())
        graphemes.toPreviousBoundary();
    qsizetype end = qMax<qsizetype>(0, graphemes.position());
    if (cut == DisplayCut::BetweenWords) {
        // Unless that would drop more than half of what fits: one long run of letters, or a
        // script without spaces, is cut within.
        qsizetype space = end;
        while (space > 0 && !text[space].isSpace())
            --space;
        while (space > 0 && text[space - 1].isSpace())
            --space;
        if (space > end / 2)
            end = space;
    }
    return text.left(end) + QChar(0x2026);
}
