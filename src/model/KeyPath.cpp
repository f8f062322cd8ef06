#include "KeyPath.h"

QString KeyPath::toString() const
{
    QString path = m_parent ? m_parent->toString() : QString();
    if (m_index >= 0) {
        path += u'[' + QString::number(m_index) + u']';
    } else if (!m_key.empty()) {
        if (!path.isEmpty())
            path += u'.';
        path += QLatin1StringView(m_key.data(), static_cast<qsizetype>(m_key.size()));
    }
    return path;
}
