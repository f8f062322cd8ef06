#pragma once

#include "Result.h"

#include <QCoreApplication>
#include <QUrl>
#include <QVersionNumber>

// One release announced by the update feed.
struct AppcastRelease {
    QString version;
    QUrl page;
};

// Reads the update feed: an RSS document whose items carry Sparkle's version attributes or
// elements and a link to the release's page.
class AppcastFeed {
    Q_DECLARE_TR_FUNCTIONS(AppcastFeed)

public:
    static inline const QString errorDomain = QStringLiteral("Appcast");

    // The item with the highest version; an error for text that is not such a feed.
    static Result<AppcastRelease> newest(const QByteArray &xml);
};
