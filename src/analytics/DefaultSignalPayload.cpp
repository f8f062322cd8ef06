#include "DefaultSignalPayload.h"

#include "TelemetryManagerConfiguration.h"

#include <QLocale>
#include <QRegularExpression>
#include <QSysInfo>

namespace {

const QString platform = QStringLiteral("Linux");

// The kernel's leading numbers: "6.1.0-18-amd64" gives 6, 1 and 0. Read once: the kernel
// does not change under a running program.
const QStringList &kernelNumbers()
{
    static const QStringList parts = [] {
        static const QRegularExpression numbers(
            QStringLiteral("^(\\d+)(?:\\.(\\d+))?(?:\\.(\\d+))?"));
        const auto match = numbers.match(QSysInfo::kernelVersion());
        QStringList found;
        for (int i = 1; i <= 3; ++i)
            found.append(match.captured(i).isEmpty() ? QStringLiteral("0") : match.captured(i));
        return found;
    }();
    return parts;
}

QString firstPiece(const QString &identifier)
{
    static const QRegularExpression separators(QStringLiteral("[-_]"));
    return identifier.split(separators).first();
}

QString lastPiece(const QString &identifier)
{
    static const QRegularExpression separators(QStringLiteral("[-_]"));
    return identifier.split(separators).last();
}

} // namespace

QString DefaultSignalPayload::systemVersion()
{
    return platform + u' ' + kernelNumbers().join(u'.');
}

QString DefaultSignalPayload::majorSystemVersion()
{
    return platform + u' ' + kernelNumbers().first();
}

QString DefaultSignalPayload::majorMinorSystemVersion()
{
    return platform + u' ' + kernelNumbers().first(2).join(u'.');
}

QString DefaultSignalPayload::region()
{
    const QLocale locale;
    if (locale.territory() != QLocale::AnyTerritory)
        return QLocale::territoryToCode(locale.territory());
    return lastPiece(locale.name());
}

QString DefaultSignalPayload::appLanguage()
{
    const QLocale locale;
    if (locale.language() != QLocale::AnyLanguage && locale.language() != QLocale::C)
        return QLocale::languageToCode(locale.language());
    return firstPiece(locale.name());
}

QString DefaultSignalPayload::preferredLanguage()
{
    const QStringList languages = QLocale::system().uiLanguages();
    return firstPiece(languages.isEmpty() ? QStringLiteral("zz-ZZ") : languages.first());
}

QMap<QString, QString>
DefaultSignalPayload::parameters(const TelemetryManagerConfiguration &configuration)
{
    const QString version = configuration.appVersion.get();
    const QString build = configuration.buildNumber.get();
    const QString architecture = QSysInfo::currentCpuArchitecture();
    const QString locale = QLocale().name();
    const QString language = appLanguage();
    const QString preferred = preferredLanguage();
    const QString regionCode = region();
    const QString system = systemVersion();
    const QString major = majorSystemVersion();
    const QString majorMinor = majorMinorSystemVersion();
    // No application store on Linux: never a TestFlight build, so always the "store" one.
    const QString isTestFlight = QStringLiteral("false");
    const QString isAppStore = QStringLiteral("true");
    const QString no = QStringLiteral("false");
    return {
        {"platform", platform},
        {"systemVersion", system},
        {"majorSystemVersion", major},
        {"majorMinorSystemVersion", majorMinor},
        {"appVersion", version},
        {"buildNumber", build},
        {"isSimulator", no},
        {"isDebug", no},
        {"isTestFlight", isTestFlight},
        {"isAppStore", isAppStore},
        {"architecture", architecture},
        {"operatingSystem", platform},
        {"targetEnvironment", QStringLiteral("native")},
        {"locale", locale},
        {"region", regionCode},
        {"appLanguage", language},
        {"preferredLanguage", preferred},
        {"telemetryClientVersion", clientVersion},
        {"TelemetryDeck.AppInfo.buildNumber", build},
        {"TelemetryDeck.AppInfo.version", version},
        {"TelemetryDeck.AppInfo.versionAndBuildNumber", version + " (build " + build + ")"},
        {"TelemetryDeck.Device.architecture", architecture},
        {"TelemetryDeck.Device.operatingSystem", platform},
        {"TelemetryDeck.Device.platform", platform},
        {"TelemetryDeck.Device.systemMajorMinorVersion", majorMinor},
        {"TelemetryDeck.Device.systemMajorVersion", major},
        {"TelemetryDeck.Device.systemVersion", system},
        {"TelemetryDeck.RunContext.isAppStore", isAppStore},
        {"TelemetryDeck.RunContext.isDebug", no},
        {"TelemetryDeck.RunContext.isSimulator", no},
        {"TelemetryDeck.RunContext.isTestFlight", isTestFlight},
        {"TelemetryDeck.RunContext.language", language},
        {"TelemetryDeck.RunContext.locale", locale},
        {"TelemetryDeck.RunContext.targetEnvironment", QStringLiteral("native")},
        {"TelemetryDeck.SDK.name", QStringLiteral("SwiftSDK")},
        {"TelemetryDeck.SDK.nameAndVersion", QStringLiteral("SwiftSDK ") + clientVersion},
        {"TelemetryDeck.SDK.version", clientVersion},
        {"TelemetryDeck.UserPreference.language", preferred},
        {"TelemetryDeck.UserPreference.region", regionCode},
    };
}
