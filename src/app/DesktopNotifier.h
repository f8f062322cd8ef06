#pragma once

#include <optional>
#include <QDBusConnection>
#include <QImage>
#include <QObject>
#include <QSet>

// Notifications through the desktop's org.freedesktop.Notifications service, each with a
// default action. Where no service answers, nothing is shown and nothing waits.
class DesktopNotifier : public QObject {
    Q_OBJECT

public:
    explicit DesktopNotifier(QDBusConnection bus = QDBusConnection::sessionBus(),
                             QObject *parent = nullptr);

    // Plain text; the image goes where the server shows images.
    void notify(const QString &title, const QString &body, const QImage &image = {});

signals:
    // The user clicked one of this app's notifications.
    void defaultActionInvoked();

private slots:
    void actionInvoked(uint id, const QString &action);
    void notificationClosed(uint id, uint reason);

private:
    struct Note {
        QString title;
        QString body;
        QImage image;
    };
    void send(const Note &note);

    QDBusConnection m_bus;
    // What the server said it can do; asked once, before the first notification.
    std::optional<QStringList> m_capabilities;
    bool m_asking = false;
    QList<Note> m_waiting;
    QSet<uint> m_shown;
};
