#include "SvgBudget.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QXmlStreamReader>

using namespace Qt::Literals::StringLiterals;

namespace {

// One element's subtree as the parser saw it: how many elements, and which ids its <use>
// elements reference.
struct Subtree {
    qint64 elements = 0;
    QStringList references;
};

class Weigher {
public:
    explicit Weigher(const QHash<QString, Subtree> &byID)
        : m_byID(byID)
    {
    }

    // Elements drawn for the subtree, references expanded; saturates past the budget, and a
    // reference cycle counts as over it.
    qint64 weigh(const Subtree &subtree)
    {
        qint64 total = subtree.elements;
        for (const QString &id : subtree.references) {
            total += weighID(id);
            if (total > SvgBudget::maximumDrawnElements)
                return total;
        }
        return total;
    }

private:
    qint64 weighID(const QString &id)
    {
        if (const auto known = m_weights.constFind(id); known != m_weights.cend())
            return *known;
        const auto subtree = m_byID.constFind(id);
        if (subtree == m_byID.cend())
            return 0;
        if (m_visiting.contains(id))
            return SvgBudget::maximumDrawnElements + 1;
        m_visiting.insert(id);
        const qint64 weight = weigh(*subtree);
        m_visiting.remove(id);
        m_weights.insert(id, weight);
        return weight;
    }

    const QHash<QString, Subtree> &m_byID;
    QHash<QString, qint64> m_weights;
    QSet<QString> m_visiting;
};

QString referencedID(const QXmlStreamAttributes &attributes)
{
    QStringView href = attributes.value("http://www.w3.org/1999/xlink"_L1, "href"_L1);
    if (href.isEmpty())
        href = attributes.value("href"_L1);
    return href.startsWith(u'#') ? href.mid(1).toString() : QString();
}

} // namespace

bool SvgBudget::allows(const QByteArray &svg)
{
    QXmlStreamReader reader(svg);
    QHash<QString, Subtree> byID;
    // The open elements, the document itself at the bottom.
    QList<std::pair<QString, Subtree>> open{{QString(), Subtree{}}};
    while (!reader.atEnd()) {
        switch (reader.readNext()) {
        case QXmlStreamReader::StartElement: {
            if (reader.name() == "image"_L1 || open.size() > maximumDepth)
                return false;
            for (auto &[id, subtree] : open)
                ++subtree.elements;
            if (open.first().second.elements > maximumDrawnElements)
                return false;
            const QXmlStreamAttributes attributes = reader.attributes();
            if (reader.name() == "use"_L1) {
                const QString target = referencedID(attributes);
                if (!target.isEmpty()) {
                    for (auto &[id, subtree] : open)
                        subtree.references.append(target);
                }
            }
            open.append({attributes.value("id"_L1).toString(), Subtree{}});
            break;
        }
        case QXmlStreamReader::EndElement: {
            auto [id, subtree] = open.takeLast();
            if (!id.isEmpty())
                byID.insert(id, std::move(subtree));
            break;
        }
        default:
            break;
        }
    }
    if (reader.hasError() || open.size() != 1)
        return false;
    return Weigher(byID).weigh(open.first().second) <= maximumDrawnElements;
}
