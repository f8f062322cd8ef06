#pragma once

#include <QDBusMessage>
#include <QObject>

// The desktop's reduced-motion and inverted-colour settings, as the XDG desktop portal publishes
// them. Read once without blocking and kept current from the portal's change signal, so asking
// costs nothing; both are false until the desktop says otherwise, and without a portal.
class DesktopAccessibility : public QObject {
    Q_OBJECT

public:
    // One per application, on the main thread; nothing without an application.
    static DesktopAccessibility *instance();

    explicit DesktopAccessibility(QObject *parent = nullptr);

    bool reduceMotion() const { return m_reduceMotion; }
    bool invertColors() const { return m_invertColors; }

private slots:
    // A message rather than typed arguments: the connection then needs no registered types.
    void settingChanged(const QDBusMessage &change);

private:
    void take(const QString &group, const QString &key, const QVariant &value);

    bool m_reduceMotion = false;
    bool m_invertColors = false;
};
