#include "Preferences.h"

#include <algorithm>
#include <QStandardPaths>

namespace {

// A text the file may hold for a team field: a string, short, on one line.
std::optional<QString> textValue(const QVariant &value, qsizetype maximum)
{
    if (value.typeId() != QMetaType::QString)
        return std::nullopt;
    const QString text = value.toString();
    if (text.size() > maximum || std::any_of(text.begin(), text.end(), [](QChar c) {
            return c.category() == QChar::Other_Control;
        }))
        return std::nullopt;
    return text;
}

} // namespace

Preferences::Preferences(const QString &path, QObject *parent)
    : QObject(parent)
    , m_file(path, QSettings::IniFormat)
{
    m_favourite = readTeam(m_file);
    for (Alert alert : {Alert::Starts, Alert::Wickets, Alert::Results})
        m_alerts[int(alert)] = readSwitch(m_file, keyOf(alert));
}

QString Preferences::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/ZelMenuBar/settings.ini");
}

std::optional<TeamInfo> Preferences::readTeam(const QSettings &file)
{
    const auto id = textValue(file.value(QStringLiteral("favourite/id")), 64);
    const auto name = textValue(file.value(QStringLiteral("favourite/name")), 100);
    if (!id || !name || id->isEmpty() || name->trimmed().isEmpty())
        return std::nullopt;
    const auto code = textValue(file.value(QStringLiteral("favourite/code"), QString()), 16);
    const auto logo = textValue(file.value(QStringLiteral("favourite/logo"), QString()), 2048);
    return TeamInfo{*id, *name, code.value_or(QString()), logo.value_or(QString())};
}

bool Preferences::readSwitch(const QSettings &file, const QString &key)
{
    // INI files hold text: only the words the app writes count.
    return file.value(key).toString() == QLatin1StringView("true");
}

QString Preferences::keyOf(Alert alert)
{
    switch (alert) {
    case Alert::Starts:
        return QStringLiteral("notify/starts");
    case Alert::Wickets:
        return QStringLiteral("notify/wickets");
    case Alert::Results:
        return QStringLiteral("notify/results");
    }
    return {};
}

void Preferences::setFavourite(const std::optional<TeamInfo> &team)
{
    if (team == m_favourite)
        return;
    m_favourite = team;
    m_file.remove(QStringLiteral("favourite"));
    if (team) {
        m_file.setValue(QStringLiteral("favourite/id"), team->id);
        m_file.setValue(QStringLiteral("favourite/name"), team->name);
        m_file.setValue(QStringLiteral("favourite/code"), team->code);
        m_file.setValue(QStringLiteral("favourite/logo"), team->logo);
    }
    m_file.sync();
    emit favouriteChanged();
}

void Preferences::setAlerts(Alert alert, bool on)
{
    if (m_alerts[int(alert)] == on)
        return;
    m_alerts[int(alert)] = on;
    m_file.setValue(keyOf(alert), on);
    m_file.sync();
    emit alertsChanged();
}
