#include "FaultInjector.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

FaultInjector::FaultInjector(Rates rates, quint64 seed)
    : m_rates(rates)
    , m_random(seed ^ 0xfa017ULL)
{
}

FaultInjector::Fault FaultInjector::next()
{
    double roll = m_random.generateDouble();
    if (roll < m_rates.fail)
        return Fault::Fail;
    roll -= m_rates.fail;
    if (roll < m_rates.drop)
        return Fault::Drop;
    roll -= m_rates.drop;
    if (roll < m_rates.garbage)
        return Fault::Garbage;
    roll -= m_rates.garbage;
    if (roll < m_rates.endless)
        return Fault::Endless;
    roll -= m_rates.endless;
    if (roll < m_rates.trickle)
        return Fault::Trickle;
    return Fault::None;
}

int FaultInjector::failureStatus()
{
    return m_random.bounded(2) ? 503 : 500;
}

QByteArray FaultInjector::garbage(const QByteArray &validBody, bool isMatchList)
{
    switch (m_random.bounded(isMatchList ? 3 : 2)) {
    case 0:
        return validBody.left(validBody.size() * 2 / 3); // malformed: cut off
    case 1:
        return isMatchList ? QByteArray(R"({"matches": "unavailable"})")
                           : QByteArray(R"({"innings": {"inningsNo": 1}})");
    default: {
        // The last match's identifier sent as text, which fails the whole list.
        QJsonObject envelope = QJsonDocument::fromJson(validBody).object();
        QJsonArray matches = envelope.value("matches").toArray();
        QJsonObject last =
            matches.isEmpty() ? QJsonObject{{"matchID", 1}} : matches.last().toObject();
        last["matchID"] = QString::number(last.value("matchID").toInteger());
        if (matches.isEmpty())
            matches.append(last);
        else
            matches.replace(matches.size() - 1, last);
        envelope["matches"] = matches;
        return QJsonDocument(envelope).toJson(QJsonDocument::Compact);
    }
    }
}
