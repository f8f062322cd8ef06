#include "DesktopSession.h"

#include <csignal>
#include <QRegularExpression>
#include <sys/prctl.h>

using namespace Qt::Literals::StringLiterals;

DesktopSession::DesktopSession() = default;

DesktopSession::~DesktopSession()
{
    stop(m_xserver);
}

bool DesktopSession::start()
{
    if (!m_home.isValid())
        return false;
    tieToTest(m_xserver);
    m_xserver.start(u"Xvfb"_s, {u"-displayfd"_s, u"1"_s, u"-screen"_s, u"0"_s, u"1280x800x24"_s,
                                u"-nolisten"_s, u"tcp"_s, u"-noreset"_s});
    if (!m_xserver.waitForReadyRead(10000))
        return false;
    m_xvfbDisplay = u":"_s + QString::fromLatin1(m_xserver.readAllStandardOutput()).trimmed();
    m_display = m_xvfbDisplay;
    return true;
}

void DesktopSession::setDisplay(const QString &display)
{
    m_display = display.isEmpty() ? m_xvfbDisplay : display;
}

QProcessEnvironment DesktopSession::environment() const
{
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert(u"DISPLAY"_s, m_display);
    env.remove(u"QT_QPA_PLATFORM"_s);
    env.remove(u"WAYLAND_DISPLAY"_s);
    env.insert(u"XDG_RUNTIME_DIR"_s, m_home.path());
    env.insert(u"XDG_CACHE_HOME"_s, m_home.filePath(u"cache"_s));
    env.insert(u"XDG_CONFIG_HOME"_s, m_home.filePath(u"config"_s));
    return env;
}

QString DesktopSession::run(const QString &program, const QStringList &arguments) const
{
    QProcess process;
    process.setProcessEnvironment(environment());
    process.start(program, arguments);
    process.waitForFinished(10000);
    return QString::fromUtf8(process.readAllStandardOutput()).trimmed();
}

QList<DesktopSession::Window> DesktopSession::windows(const QString &className) const
{
    QList<Window> found;
    const QStringList ids = run(u"xdotool"_s, {u"search"_s, u"--onlyvisible"_s, u"--classname"_s,
                                               u"^%1$"_s.arg(className)})
                                .split(u'\n', Qt::SkipEmptyParts);
    static const QRegularExpression shell(
        u"X=(-?\\d+)\\s+Y=(-?\\d+)\\s+WIDTH=(\\d+)\\s+HEIGHT=(\\d+)"_s);
    for (const QString &id : ids) {
        const auto match =
            shell.match(run(u"xdotool"_s, {u"getwindowgeometry"_s, u"--shell"_s, id}));
        if (match.hasMatch())
            found.append({run(u"xdotool"_s, {u"getwindowname"_s, id}),
                          QRect(match.captured(1).toInt(), match.captured(2).toInt(),
                                match.captured(3).toInt(), match.captured(4).toInt())});
    }
    return found;
}

void DesktopSession::click(QPoint at, int button) const
{
    run(u"xdotool"_s, {u"mousemove"_s, QString::number(at.x()), QString::number(at.y()), u"click"_s,
                       QString::number(button)});
}

void DesktopSession::key(const QString &name) const
{
    run(u"xdotool"_s, {u"key"_s, name});
}

void DesktopSession::tieToTest(QProcess &process)
{
    process.setChildProcessModifier([] { ::prctl(PR_SET_PDEATHSIG, SIGTERM); });
}

void DesktopSession::stop(QProcess &process)
{
    if (process.state() == QProcess::NotRunning)
        return;
    process.terminate();
    if (!process.waitForFinished(5000)) {
        process.kill();
        process.waitForFinished();
    }
}
