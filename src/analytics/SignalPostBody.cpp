#include "SignalPostBody.h"

#include <QJsonDocument>
#include <QLocale>
#include <QTimeZone>

namespace {

const QDateTime referenceDate(QDate(2001, 1, 1), QTime(0, 0), QTimeZone::utc());

QJsonObject fieldsWithDate(const SignalPostBody &body, const QJsonValue &receivedAt)
{
    QJsonObject payload;
    for (auto it = body.payload.cbegin(); it != body.payload.cend(); ++it)
        payload.insert(it.key(), it.value());
    QJsonObject object{
        {"receivedAt", receivedAt},     {"appID", body.appID}, {"clientUser", body.clientUser},
        {"sessionID", body.sessionID},  {"type", body.type},   {"payload", payload},
        {"isTestMode", body.isTestMode}};
    if (body.floatValue)
        object.insert("floatValue", *body.floatValue);
    return object;
}

} // namespace

QJsonObject SignalPostBody::toWireJson() const
{
    const QString date = QLocale(QLocale::English, QLocale::UnitedStates)
                             .toString(receivedAt.toUTC(), u"yyyy-MM-dd'T'HH:mm:ss");
    return fieldsWithDate(*this, date + QStringLiteral("+0000"));
}

QJsonObject SignalPostBody::toCacheJson() const
{
    return fieldsWithDate(*this, double(referenceDate.msecsTo(receivedAt)) / 1000.0);
}

std::optional<SignalPostBody> SignalPostBody::fromCacheJson(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const QJsonValue payload = object.value("payload");
    const QJsonValue floatValue = object.value("floatValue");
    if (!object.value("receivedAt").isDouble() || !payload.isObject() ||
        !(floatValue.isUndefined() || floatValue.isDouble()))
        return std::nullopt;
    SignalPostBody body;
    for (const auto &[key, target] :
         {std::pair{"appID", &body.appID}, std::pair{"clientUser", &body.clientUser},
          std::pair{"sessionID", &body.sessionID}, std::pair{"type", &body.type},
          std::pair{"isTestMode", &body.isTestMode}}) {
        const QJsonValue field = object.value(QLatin1StringView(key));
        if (!field.isString())
            return std::nullopt;
        *target = field.toString();
    }
    const QJsonObject entries = payload.toObject();
    for (auto it = entries.begin(); it != entries.end(); ++it) {
        if (!it.value().isString())
            return std::nullopt;
        body.payload.insert(it.key(), it.value().toString());
    }
    body.receivedAt =
        referenceDate.addMSecs(qRound64(object.value("receivedAt").toDouble() * 1000.0));
    if (floatValue.isDouble())
        body.floatValue = floatValue.toDouble();
    return body;
}

QString SignalPostBody::description() const
{
    return QString::fromUtf8(QJsonDocument(toWireJson()).toJson(QJsonDocument::Compact));
}
