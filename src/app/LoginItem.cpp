#include "LoginItem.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>

LoginItem::LoginItem(QString userFolder, QStringList systemFolders, QString program)
    : m_userFolder(std::move(userFolder))
    , m_systemFolders(std::move(systemFolders))
    , m_program(std::move(program))
{
}

LoginItem LoginItem::forThisUser()
{
    const auto autostart = [](QStringList folders) {
        for (QString &folder : folders)
            folder += QStringLiteral("/autostart");
        return folders;
    };
    QStringList system =
        autostart(QStandardPaths::standardLocations(QStandardPaths::GenericConfigLocation));
    const QString user = system.isEmpty() ? QString() : system.takeFirst();
    return LoginItem(user, system, QCoreApplication::applicationFilePath());
}

// A desktop entry counts as hidden by the key that every desktop honours.
bool LoginItem::hidden(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() > 64 * 1024)
        return true;
    for (const QByteArray &line : file.readAll().split('\n')) {
        if (line.trimmed() == "Hidden=true")
            return true;
    }
    return false;
}

QString LoginItem::systemEntry() const
{
    for (const QString &folder : m_systemFolders) {
        const QString path = folder + u'/' + fileName;
        if (QFile::exists(path))
            return path;
    }
    return {};
}

bool LoginItem::isOn() const
{
    const QString user = m_userFolder + u'/' + fileName;
    if (QFile::exists(user))
        return !hidden(user);
    const QString system = systemEntry();
    return !system.isEmpty() && !hidden(system);
}

bool LoginItem::set(bool on) const
{
    if (m_userFolder.isEmpty())
        return false;
    const QString user = m_userFolder + u'/' + fileName;
    if (!on && systemEntry().isEmpty())
        return !QFile::exists(user) || QFile::remove(user);

    QFile templateFile(QStringLiteral(":/zel-menubar-autostart.desktop"));
    if (!templateFile.open(QIODevice::ReadOnly) || !QDir().mkpath(m_userFolder))
        return false;
    QByteArray entry = templateFile.readAll();
    // The program as it runs now, quoted as desktop entries quote arguments.
    QString program = m_program;
    program.replace(u'\\', QStringLiteral("\\\\")).replace(u'"', QStringLiteral("\\\""));
    entry.replace("Exec=zel-menubar", "Exec=\"" + program.toUtf8() + '"');
    if (!on)
        entry += "Hidden=true\n";
    QSaveFile file(user);
    return file.open(QIODevice::WriteOnly) && file.write(entry) == entry.size() && file.commit();
}
