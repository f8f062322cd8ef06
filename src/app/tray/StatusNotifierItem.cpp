#include "StatusNotifierItem.h"

#include "StatusIconArt.h"
#include "StatusTitle.h"

#include <array>
#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QImage>
#include <QLoggingCategory>
#include <QSaveFile>
#include <QTimer>
#include <utility>

namespace {

Q_LOGGING_CATEGORY(lcTray, "zel.tray")

constexpr std::array iconSides{16, 22, 32, 48};

const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuPath = QStringLiteral("/MenuBar");
const QString watcherPath = QStringLiteral("/StatusNotifierWatcher");
constexpr int registerAttempts = 5;

} // namespace

StatusNotifierItem::StatusNotifierItem(DBusMenuExporter::EntrySource menuEntries,
                                       const QString &iconFolder, QObject *parent)
    : StatusItem(parent)
    , m_bus(QDBusConnection::sessionBus())
    , m_serviceName(
          QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid()))
    , m_menu(std::move(menuEntries))
    , m_iconThemePath(writeIconTheme(iconFolder) ? iconFolder : QString())
    , m_title(StatusTitle::bat)
{
    if (m_iconThemePath.isEmpty())
        qCWarning(lcTray) << "could not write the status icons to" << iconFolder;
    drawIcon();
    registerDBusWireTypes();
    m_bus.registerObject(itemPath, this,
                         QDBusConnection::ExportScriptableContents |
                             QDBusConnection::ExportAllProperties);
    connect(&m_menu, &DBusMenuExporter::opened, this, &StatusItem::menuOpened);
    m_bus.registerObject(menuPath, &m_menu,
                         QDBusConnection::ExportScriptableContents |
                             QDBusConnection::ExportAllProperties);
    if (!m_bus.registerService(m_serviceName))
        qCWarning(lcTray) << "could not take the bus name" << m_serviceName;
    // GNOME 43's AppIndicator extension drops an item whose setup races its own name watch (about
    // one start in thirty on a busy machine), and the panel loses it for good unless it asks again.
    m_bus.connect(watcherService(), watcherPath, watcherService(),
                  QStringLiteral("StatusNotifierItemUnregistered"), this,
                  SLOT(watcherDropped(QString)));
    registerWithWatcher(registerAttempts);
}

void StatusNotifierItem::registerWithWatcher(int attemptsLeft)
{
    QDBusMessage call =
        QDBusMessage::createMethodCall(watcherService(), watcherPath, watcherService(),
                                       QStringLiteral("RegisterStatusNotifierItem"));
    call << m_serviceName;
    auto *pending = new QDBusPendingCallWatcher(m_bus.asyncCall(call), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, attemptsLeft](QDBusPendingCallWatcher *reply) {
                reply->deleteLater();
                if (!reply->isError())
                    return;
                if (attemptsLeft > 1)
                    QTimer::singleShot(
                        500, this, [this, attemptsLeft] { registerWithWatcher(attemptsLeft - 1); });
                else
                    qCWarning(lcTray)
                        << "the StatusNotifierWatcher refused the item:" << reply->error().name()
                        << reply->error().message();
            });
}

void StatusNotifierItem::watcherDropped(const QString &item)
{
    // Watchers name an item by its service, some with its object path after it.
    if (item != m_serviceName && !item.startsWith(m_serviceName + u'/'))
        return;
    // A host that drops every item it is given is not asked forever.
    if (m_registrationsAfterDrop == 0) {
        qCWarning(lcTray) << "the StatusNotifierWatcher dropped the item once more; it stays off";
        return;
    }
    --m_registrationsAfterDrop;
    registerWithWatcher(registerAttempts);
}

StatusNotifierItem::~StatusNotifierItem()
{
    m_bus.unregisterService(m_serviceName);
    m_bus.unregisterObject(menuPath);
    m_bus.unregisterObject(itemPath);
}

bool StatusNotifierItem::writeIconTheme(const QString &folder)
{
    using State = StatusTitle::State;
    const QDir theme(folder + QStringLiteral("/hicolor"));
    QStringList directories;
    for (int side : iconSides) {
        const QString directory = QStringLiteral("%1x%1/apps").arg(side);
        directories << directory;
        if (!theme.mkpath(directory))
            return false;
        // Old data looks the same whatever the state.
        for (auto [state, offline] : {std::pair{State::Quiet, false},
                                      {State::Live, false},
                                      {State::Delayed, false},
                                      {State::Quiet, true}}) {
            const QString file =
                QStringLiteral("%1/%2.png").arg(directory, StatusIconArt::nameFor(state, offline));
            if (!StatusIconArt::image(state, offline, side).save(theme.filePath(file)))
                return false;
        }
    }
    QString sizes;
    for (int side : iconSides)
        sizes += QStringLiteral("\n[%1x%1/apps]\nSize=%1\nType=Fixed\n").arg(side);
    QSaveFile index(theme.filePath(QStringLiteral("index.theme")));
    return index.open(QIODevice::WriteOnly) &&
           index.write(QStringLiteral("[Icon Theme]\nName=Hicolor\nDirectories=%1\n%2")
                           .arg(directories.join(u','), sizes)
                           .toUtf8()) > 0 &&
           index.commit();
}

QString StatusNotifierItem::iconName() const
{
    return m_iconThemePath.isEmpty() ? QString()
                                     : StatusIconArt::nameFor(m_state, !m_offlineNote.isEmpty());
}

QString StatusNotifierItem::labelForHost()
{
    // GNOME's AppIndicator extension (59) draws no label it reads while it sets the item up, only
    // one it is told of afterwards, and that reliably only with the rest of a title's news: the
    // first read finds none, and the label follows, with the icon and the tool tip.
    if (std::exchange(m_labelRead, true) || label().isEmpty())
        return label();
    QTimer::singleShot(0, this, [this] {
        emit XAyatanaNewLabel(label(), labelGuide());
        emit NewIcon();
        emit NewToolTip();
    });
    return {};
}

QString StatusNotifierItem::labelOf(const QString &title)
{
    QString label = title;
    if (label.startsWith(StatusTitle::bat))
        label.remove(0, StatusTitle::bat.size());
    return label.trimmed();
}

void StatusNotifierItem::setTitle(const StatusTitle::Line &title)
{
    if (title.text == m_title && title.state == m_state)
        return;
    // Only the tool tip says the state in words: the label is announced when its text moves.
    const bool textChanged = title.text != m_title;
    const bool stateChanged = title.state != m_state;
    m_title = title.text;
    m_state = title.state;
    // A host that has read no label yet reads this one.
    if (textChanged && m_labelRead)
        emit XAyatanaNewLabel(label(), labelGuide());
    // The icon's news is what makes GNOME's extension read the accessible name again.
    if (stateChanged)
        drawIcon();
    else
        emit NewIcon();
    emit NewToolTip();
}

QString StatusNotifierItem::accessibleName() const
{
    const QString words = StatusTitle::spoken({m_title, m_state});
    return words.isEmpty() ? title() : tr("%1, %2").arg(title(), words);
}

void StatusNotifierItem::setOfflineNote(const QString &note)
{
    if (note == m_offlineNote)
        return;
    const bool wasOffline = !m_offlineNote.isEmpty();
    m_offlineNote = note;
    if (wasOffline != !note.isEmpty())
        drawIcon();
    emit NewToolTip();
}

// Hosts may read tool tips as markup, and these texts come from the network.
DBusToolTip StatusNotifierItem::toolTip() const
{
    return {iconName(),
            {},
            m_title.toHtmlEscaped(),
            StatusTitle::inWords({m_title, m_state}, m_offlineNote).toHtmlEscaped()};
}

QString StatusNotifierItem::labelGuide() const
{
    return QStringLiteral("MMM \U0001F534 888/8 (88.8) \u00B7 888/8");
}

QRect StatusNotifierItem::pointAt(int x, int y)
{
    // Hosts that do not know the click point send 0, 0.
    if (x == 0 && y == 0)
        return {};
    m_pointedAt = QRect(x, y, 1, 1);
    return m_pointedAt;
}

void StatusNotifierItem::Activate(int x, int y)
{
    emit leftClicked(pointAt(x, y));
}

void StatusNotifierItem::SecondaryActivate(int x, int y)
{
    Activate(x, y);
}

void StatusNotifierItem::ContextMenu(int x, int y)
{
    pointAt(x, y);
    emit rightClicked(QPoint(x, y));
}

void StatusNotifierItem::Scroll(int, const QString &) {}

void StatusNotifierItem::ProvideXdgActivationToken(const QString &) {}

void StatusNotifierItem::drawIcon()
{
    m_icon.clear();
    for (int side : iconSides) {
        const QImage drawn = StatusIconArt::image(m_state, !m_offlineNote.isEmpty(), side)
                                 .convertToFormat(QImage::Format_ARGB32);
        DBusImage image{side, side, {}};
        image.pixels.reserve(side * side * 4);
        for (int row = 0; row < side; ++row) {
            const auto *line = reinterpret_cast<const QRgb *>(drawn.constScanLine(row));
            for (int column = 0; column < side; ++column) {
                const QRgb pixel = line[column];
                image.pixels.append(char(qAlpha(pixel)));
                image.pixels.append(char(qRed(pixel)));
                image.pixels.append(char(qGreen(pixel)));
                image.pixels.append(char(qBlue(pixel)));
            }
        }
        m_icon.append(image);
    }
    emit NewIcon();
}
