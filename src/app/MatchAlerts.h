#pragma once

#include "DesktopNotifier.h"
#include "MatchEvents.h"

class ImageCache;
class Preferences;
class TodayViewModel;

// Tells the desktop what happened in today's matches, as the user asked on the settings page.
class MatchAlerts : public QObject {
    Q_OBJECT

public:
    MatchAlerts(const TodayViewModel &vm, const Preferences &preferences, const QString &serviceURL,
                ImageCache &logos, QObject *parent = nullptr);

signals:
    // A notification was clicked: show today's matches.
    void openRequested();

private:
    void todayLoaded();
    QImage badgesOf(const ZelMatch &match) const;

    const TodayViewModel &m_vm;
    const Preferences &m_preferences;
    QString m_serviceURL;
    ImageCache &m_logos;
    MatchEvents m_events;
    DesktopNotifier m_notifier;
};
