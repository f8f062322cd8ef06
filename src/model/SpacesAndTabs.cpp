#include "SpacesAndTabs.h"

QString trimSpacesAndTabs(const QString &text)
{
    const auto isBlank = [](QChar c) { return c == u' ' || c == u'\t'; };
    qsizetype begin = 0;
    qsizetype end = text.size();
    while (begin < end && isBlank(text.at(begin)))
        ++begin;
    while (end > begin && isBlank(text.at(end - 1)))
        --end;
    return begin == 0 && end == text.size() ? text : text.sliced(begin, end - begin);
}
