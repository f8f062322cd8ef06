#pragma once

#include <QByteArray>

// Whether an SVG logo is cheap enough to draw. Qt's renderer cannot be interrupted, so what it
// would draw is counted first: elements, with every <use> standing for what it references, so
// that a few kilobytes of nested references cannot make it draw a billion shapes. Embedded or
// linked images are refused outright: they would read local files or inflate huge rasters.
class SvgBudget {
public:
    static constexpr qint64 maximumDrawnElements = 10'000;
    static constexpr int maximumDepth = 64;

    static bool allows(const QByteArray &svg);
};
