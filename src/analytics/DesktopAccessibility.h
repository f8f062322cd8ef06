#pragma once

#include <functional>
#include <optional>
#include <QDBusMessage>
#include <QFileSystemWatcher>
#include <QObject>

// The desktop's reduced-motion and inverted-colour settings, from every source a major desktop
// keeps them in (see the README's list): the XDG desktop portal's settings where it carries
// them, KDE's own configuration files otherwise. Read without blocking and kept current from
// the portal's change signal and the files' changes, so asking costs nothing once read; false
// where the desktop has no such switch.
class DesktopAccessibility : public QObject {
    Q_OBJECT

public:
    // How long the portal may take to answer before the values are taken as they are.
    static constexpr int readTimeoutMs = 3000;

    // One per application, on the main thread; nothing without an application.
    static DesktopAccessibility *instance();

    explicit DesktopAccessibility(QObject *parent = nullptr);

    // Calls back, in order of asking, once the first reads are in (at once after that).
    void whenRead(QObject *context, std::function<void()> then);
    bool reduceMotion() const;
    bool invertColors() const;

signals:
    void read();

private slots:
    // A message rather than typed arguments: the connection then needs no registered types.
    void settingChanged(const QDBusMessage &change);

private:
    void take(const QString &group, const QString &key, const QVariant &value);
    void readKdeFiles();
    void replyArrived();

    int m_readsPending = 0;
    QFileSystemWatcher m_kdeFiles;
    // What each source says; a source that said nothing counts as off.
    bool m_appearanceReducedMotion = false;
    bool m_gnomeAnimationsOff = false;
    bool m_gnomeMagnifierOn = false;
    bool m_gnomeMagnifierInverts = false;
    std::optional<bool> m_kdeAnimationsOffByPortal;
    bool m_kdeAnimationsOffByFile = false;
    bool m_kwinInverts = false;
};
