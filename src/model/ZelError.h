#pragma once

#include <QString>

// A failure passed to a completion: where it came from, a code, and the text the user sees.
struct ZelError {
    QString domain;
    qint64 code = 0;
    QString description;

    friend bool operator==(const ZelError &, const ZelError &) = default;
};
