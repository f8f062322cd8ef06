#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QList>

// One session of the history kept in the per-application store.
struct StoredSession {
    QDateTime startedAt;
    int durationInSeconds = 0;

    friend bool operator==(const StoredSession &, const StoredSession &) = default;

    // A JSON array of {"st": whole seconds since 1970, "dn": seconds}.
    static QByteArray encode(const QList<StoredSession> &sessions);
    // Anything but such an array is no history at all.
    static QList<StoredSession> decode(const QByteArray &json);
};
