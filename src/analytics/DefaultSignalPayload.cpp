#include "DefaultSignalPayload.h"

#include "DesktopAccessibility.h"
#include "TelemetryManagerConfiguration.h"

#include <mutex>
#include <QFile>
#include <QGuiApplication>
#include <QLocale>
#include <QPalette>
#include <QScreen>
#include <QSet>
#include <QSysInfo>
#include <sys/utsname.h>

namespace {

const QString platform = QStringLiteral("Linux");

// The kernel's leading numbers: "6.1.0-18-amd64" gives 6, 1 and 0. Read once: the kernel
// does not change under a running program.
const QStringList &kernelNumbers()
{
    static const QStringList parts = [] {
        const QString version = QSysInfo::kernelVersion();
        QStringList found;
        qsizetype at = 0;
        while (found.size() < 3 && at < version.size() && version.at(at).isDigit()) {
            const qsizetype start = at;
            while (at < version.size() && version.at(at).isDigit())
                ++at;
            found.append(version.mid(start, at - start));
            if (at >= version.size() || version.at(at) != u'.')
                break;
            ++at;
        }
        while (found.size() < 3)
            found.append(QStringLiteral("0"));
        return found;
    }();
    return parts;
}

QStringList pieces(const QString &identifier)
{
    return QString(identifier).replace(u'_', u'-').split(u'-');
}

QString firstPiece(const QString &identifier)
{
    return pieces(identifier).first();
}

// Territories whose first week of the year needs four of its days in that year (the ISO rule);
// everywhere else one day is enough. From the Unicode CLDR's week data.
bool firstWeekNeedsFourDays(QLocale::Territory territory)
{
    static const QSet<QString> codes{
        QStringLiteral("AD"), QStringLiteral("AN"), QStringLiteral("AT"), QStringLiteral("AX"),
        QStringLiteral("BE"), QStringLiteral("BG"), QStringLiteral("CH"), QStringLiteral("CZ"),
        QStringLiteral("DE"), QStringLiteral("DK"), QStringLiteral("EE"), QStringLiteral("ES"),
        QStringLiteral("FI"), QStringLiteral("FJ"), QStringLiteral("FO"), QStringLiteral("FR"),
        QStringLiteral("GB"), QStringLiteral("GF"), QStringLiteral("GG"), QStringLiteral("GI"),
        QStringLiteral("GP"), QStringLiteral("GR"), QStringLiteral("HU"), QStringLiteral("IE"),
        QStringLiteral("IM"), QStringLiteral("IS"), QStringLiteral("IT"), QStringLiteral("JE"),
        QStringLiteral("LI"), QStringLiteral("LT"), QStringLiteral("LU"), QStringLiteral("MC"),
        QStringLiteral("MQ"), QStringLiteral("NL"), QStringLiteral("NO"), QStringLiteral("PL"),
        QStringLiteral("PT"), QStringLiteral("RE"), QStringLiteral("RU"), QStringLiteral("SE"),
        QStringLiteral("SJ"), QStringLiteral("SK"), QStringLiteral("SM"), QStringLiteral("VA")};
    return codes.contains(QLocale::territoryToCode(territory));
}

// The Gregorian week of the year under the locale's rule: its first day of the week, and how
// many days of the first week must fall in the new year. The last days of December can be in
// week 1, the first days of January in the last week of the year before.
int weekOfYear(QDate date, const QLocale &locale)
{
    const int firstDay = locale.firstDayOfWeek();
    const int minimalDays = firstWeekNeedsFourDays(locale.territory()) ? 4 : 1;
    const auto firstWeekStart = [&](int year) {
        const QDate newYear(year, 1, 1);
        const int intoWeek = (newYear.dayOfWeek() - firstDay + 7) % 7;
        const QDate weekStart = newYear.addDays(-intoWeek);
        return 7 - intoWeek >= minimalDays ? weekStart : weekStart.addDays(7);
    };
    if (date >= firstWeekStart(date.year() + 1))
        return 1;
    QDate start = firstWeekStart(date.year());
    if (date < start)
        start = firstWeekStart(date.year() - 1);
    return int(start.daysTo(date) / 7) + 1;
}

QString lastPiece(const QString &identifier)
{
    return pieces(identifier).last();
}

} // namespace

QString DefaultSignalPayload::decimalText(double value)
{
    QString text = QString::number(value, 'f', 6);
    while (text.endsWith(u'0') && !text.endsWith(QStringLiteral(".0")))
        text.chop(1);
    return text;
}

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

QString DefaultSignalPayload::modelName()
{
    // Read once: every signal asks, and the machine stays the same.
    static const QString name = [] {
        QFile product(QStringLiteral("/sys/class/dmi/id/product_name"));
        if (product.open(QIODevice::ReadOnly)) {
            const QString read = QString::fromUtf8(product.read(256)).trimmed();
            if (!read.isEmpty())
                return read;
        }
        utsname system{};
        return uname(&system) == 0 ? QString::fromUtf8(system.machine) : QString();
    }();
    return name;
}

QString DefaultSignalPayload::timeZone(int offsetSeconds)
{
    const int hours = offsetSeconds / 3600;
    const int minutes = std::abs((offsetSeconds / 60) % 60);
    QString text =
        QStringLiteral("UTC") + (offsetSeconds < 0 ? u'-' : u'+') + QString::number(hours);
    if (minutes != 0)
        text += u':' + QStringLiteral("%1").arg(minutes, 2, 10, QChar(u'0'));
    return text;
}

QMap<QString, QString> DefaultSignalPayload::calendarParameters(const QDateTime &moment,
                                                                const QLocale &locale)
{
    const QDate date = moment.date();
    const int dayOfWeek = date.dayOfWeek(); // 1 = Monday, as the signal wants it
    const auto number = [](int value) { return QString::number(value); };
    return {
        {"TelemetryDeck.Calendar.dayOfMonth", number(date.day())},
        {"TelemetryDeck.Calendar.dayOfWeek", number(dayOfWeek)},
        {"TelemetryDeck.Calendar.dayOfYear", number(date.dayOfYear())},
        {"TelemetryDeck.Calendar.weekOfYear", number(weekOfYear(date, locale))},
        {"TelemetryDeck.Calendar.isWeekend",
         dayOfWeek >= 6 ? QStringLiteral("true") : QStringLiteral("false")},
        {"TelemetryDeck.Calendar.monthOfYear", number(date.month())},
        {"TelemetryDeck.Calendar.quarterOfYear", number((date.month() - 1) / 3 + 1)},
        {"TelemetryDeck.Calendar.hourOfDay", number(moment.time().hour() + 1)},
    };
}

QMap<QString, QString> DefaultSignalPayload::displayParameters()
{
    const QString unknown = QStringLiteral("N/A");
    const bool gui = qobject_cast<QGuiApplication *>(QCoreApplication::instance()) != nullptr;
    const QScreen *screen = gui ? QGuiApplication::primaryScreen() : nullptr;
    const QSize size = screen ? screen->geometry().size() : QSize();
    const bool dark = gui && QGuiApplication::palette().color(QPalette::Window).lightness() < 128;
    QString direction = unknown;
    if (gui)
        direction = QGuiApplication::layoutDirection() == Qt::RightToLeft
                        ? QStringLiteral("rightToLeft")
                        : QStringLiteral("leftToRight");
    return {
        {"TelemetryDeck.Device.screenResolutionHeight",
         screen ? decimalText(size.height()) : unknown},
        {"TelemetryDeck.Device.screenResolutionWidth",
         screen ? decimalText(size.width()) : unknown},
        {"TelemetryDeck.Device.screenScaleFactor",
         screen ? decimalText(screen->devicePixelRatio()) : unknown},
        {"TelemetryDeck.UserPreference.colorScheme",
         dark ? QStringLiteral("Dark") : QStringLiteral("Light")},
        {"TelemetryDeck.UserPreference.layoutDirection", direction},
    };
}

QMap<QString, QString> DefaultSignalPayload::accessibilityParameters()
{
    const DesktopAccessibility *desktop = DesktopAccessibility::instance();
    const auto text = [](bool on) { return on ? QStringLiteral("true") : QStringLiteral("false"); };
    return {
        {"TelemetryDeck.Accessibility.isReduceMotionEnabled",
         text(desktop && desktop->reduceMotion())},
        {"TelemetryDeck.Accessibility.isInvertColorsEnabled",
         text(desktop && desktop->invertColors())},
    };
}

QMap<QString, QString>
DefaultSignalPayload::deviceParameters(const TelemetryManagerConfiguration &configuration)
{
    // The same for every signal of a run unless the configuration's version changes: built once.
    struct Built {
        QString version;
        QString build;
        QMap<QString, QString> keys;
    };
    static std::mutex lock;
    static std::optional<Built> built;
    const QString version = configuration.appVersion.get();
    const QString build = configuration.buildNumber.get();
    std::lock_guard locker(lock);
    if (!built || built->version != version || built->build != build)
        built = Built{version, build, buildDeviceParameters(version, build)};
    return built->keys;
}

QMap<QString, QString> DefaultSignalPayload::buildDeviceParameters(const QString &version,
                                                                   const QString &build)
{
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
    const QString model = modelName();
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
        {"modelName", model},
        {"TelemetryDeck.Device.modelName", model},
        {"TelemetryDeck.Device.orientation", QStringLiteral("Fixed")},
    };
}

QMap<QString, QString> DefaultSignalPayload::momentParameters(const QDateTime &now)
{
    QMap<QString, QString> keys = displayParameters();
    keys.insert(QStringLiteral("TelemetryDeck.Device.timeZone"), timeZone(now.offsetFromUtc()));
    keys.insert(accessibilityParameters());
    keys.insert(calendarParameters(now));
    // No extension identifier on Linux.
    return keys;
}
