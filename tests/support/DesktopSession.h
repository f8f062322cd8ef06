#pragma once

#include <QProcess>
#include <QRect>
#include <QTemporaryDir>

// A desktop of the test's own: an Xvfb display, private XDG folders, and xdotool to look at
// windows and to click. Every process it starts dies with the test.
class DesktopSession {
public:
    struct Window {
        QString name;
        QRect geometry;
    };

    DesktopSession();
    ~DesktopSession();

    bool start();
    QString display() const { return m_display; }
    // Points later processes at another X server (Xwayland); empty goes back to Xvfb.
    void setDisplay(const QString &display);
    QString path(const QString &relative) const { return m_home.filePath(relative); }
    QProcessEnvironment environment() const;

    // Runs a program to the end on this desktop; its trimmed standard output.
    QString run(const QString &program, const QStringList &arguments) const;
    QList<Window> windows(const QString &className) const;
    void click(QPoint at, int button) const;
    void key(const QString &name) const;

    static void tieToTest(QProcess &process);
    static void stop(QProcess &process);

private:
    QTemporaryDir m_home;
    QString m_xvfbDisplay;
    QString m_display;
    QProcess m_xserver;
};
