#include "MatchAlerts.h"

#include "ImageCache.h"
#include "Preferences.h"
#include "TodayViewModel.h"

#include <QPainter>

MatchAlerts::MatchAlerts(const TodayViewModel &vm, const Preferences &preferences,
                         const QString &serviceURL, ImageCache &logos, QObject *parent)
    : QObject(parent)
    , m_vm(vm)
    , m_preferences(preferences)
    , m_serviceURL(serviceURL)
    , m_logos(logos)
{
    connect(&vm, &TodayViewModel::matchesChanged, this, &MatchAlerts::todayLoaded);
    // What happened while the machine slept is news no more.
    connect(&vm, &TodayViewModel::resumed, this, [this] { m_events.rebase(); });
    connect(&m_notifier, &DesktopNotifier::defaultActionInvoked, this, &MatchAlerts::openRequested);
}

void MatchAlerts::todayLoaded()
{
    using Alert = Preferences::Alert;
    const MatchEvents::Wanted wanted{
        m_preferences.alerts(Alert::Starts), m_preferences.alerts(Alert::Wickets),
        m_preferences.alerts(Alert::Results), m_preferences.favouriteTeamID()};
    for (const MatchEvents::Event &event : m_events.compare(m_vm.matches(), wanted))
        m_notifier.notify(event.title, event.body, badgesOf(event.match));
}

// The two sides' badges side by side, from those already in memory; nothing without either.
QImage MatchAlerts::badgesOf(const ZelMatch &match) const
{
    const auto badge = [&](const std::optional<QUrl> &url) {
        return url ? m_logos.image(ImageCache::keyFor(*url)) : QImage();
    };
    const QImage home = badge(match.homeTeamLogoURL(m_serviceURL));
    const QImage away = badge(match.awayTeamLogoURL(m_serviceURL));
    if (home.isNull() || away.isNull())
        return {};
    constexpr int side = 48;
    QImage both(2 * side + 8, side, QImage::Format_ARGB32_Premultiplied);
    both.fill(Qt::transparent);
    QPainter painter(&both);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(QRect(0, 0, side, side), home);
    painter.drawImage(QRect(side + 8, 0, side, side), away);
    return both;
}
