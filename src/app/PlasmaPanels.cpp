#include "PlasmaPanels.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QRegularExpression>

namespace {

// A floating panel's surface reaches this far beyond the panel on each side (Plasma 6.3, where
// under X11 a 40 px panel's window is 56 px).
constexpr int floatingMargin = 8;
constexpr int answerTimeoutMs = 250;

} // namespace

QRect PlasmaPanels::panelAt(const QPoint &point)
{
    if (!qEnvironmentVariable("XDG_CURRENT_DESKTOP").contains(QLatin1StringView("KDE")))
        return {};
    QDBusMessage ask = QDBusMessage::createMethodCall(
        QStringLiteral("org.kde.plasmashell"), QStringLiteral("/PlasmaShell"),
        QStringLiteral("org.kde.PlasmaShell"), QStringLiteral("evaluateScript"));
    ask << QStringLiteral("panels().forEach(p => { const s = screenGeometry(p.screen);"
                          " print([p.location, p.height, p.floating, s.x, s.y, s.width,"
                          " s.height].join(' ') + '\\n'); });");
    const QDBusMessage answer =
        QDBusConnection::sessionBus().call(ask, QDBus::Block, answerTimeoutMs);
    if (answer.type() != QDBusMessage::ReplyMessage || answer.arguments().isEmpty())
        return {};
    for (const QRect &surface : surfaces(answer.arguments().constFirst().toString()))
        if (surface.contains(point))
            return surface;
    return {};
}

QList<QRect> PlasmaPanels::surfaces(const QString &answer)
{
    static const QRegularExpression line(
        QStringLiteral(
            R"(^(top|bottom|left|right) (\d+) (true|false) (-?\d+) (-?\d+) (\d+) (\d+)$)"),
        QRegularExpression::MultilineOption);
    QList<QRect> found;
    for (const QRegularExpressionMatch &panel : line.globalMatch(answer)) {
        const QRect screen(panel.captured(4).toInt(), panel.captured(5).toInt(),
                           panel.captured(6).toInt(), panel.captured(7).toInt());
        const int thickness =
            panel.captured(2).toInt() + (panel.captured(3) == u"true" ? 2 * floatingMargin : 0);
        const QString location = panel.captured(1);
        if (location == u"top")
            found << screen.adjusted(0, 0, 0, thickness - screen.height());
        else if (location == u"bottom")
            found << screen.adjusted(0, screen.height() - thickness, 0, 0);
        else if (location == u"left")
            found << screen.adjusted(0, 0, thickness - screen.width(), 0);
        else
            found << screen.adjusted(screen.width() - thickness, 0, 0, 0);
    }
    return found;
}
