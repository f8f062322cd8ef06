#include "AppcastFeed.h"

#include <QXmlStreamReader>

using namespace Qt::Literals::StringLiterals;

namespace {

struct Item {
    QString shortVersion;
    QString version;
    QString link;
    QString releaseNotes;
    QString enclosure;
};

bool isSparkle(const QXmlStreamReader &reader)
{
    return reader.namespaceUri() == "http://www.andymatuschak.org/xml-namespaces/sparkle"_L1 ||
           reader.prefix() == "sparkle"_L1;
}

// Only web pages: a feed must not make us open a local file or run a scheme handler.
QUrl webPage(const QString &text)
{
    const QUrl url(text.trimmed(), QUrl::StrictMode);
    const bool web = url.scheme() == "https"_L1 || url.scheme() == "http"_L1;
    return web && url.isValid() && !url.host().isEmpty() ? url : QUrl();
}

Item readItem(QXmlStreamReader &reader)
{
    Item item;
    while (reader.readNextStartElement()) {
        const auto name = reader.name();
        if (name == "enclosure"_L1) {
            const QXmlStreamAttributes attributes = reader.attributes();
            for (const QXmlStreamAttribute &attribute : attributes) {
                if (attribute.name() == "url"_L1)
                    item.enclosure = attribute.value().toString();
                else if (attribute.name() == "shortVersionString"_L1)
                    item.shortVersion = attribute.value().toString();
                else if (attribute.name() == "version"_L1)
                    item.version = attribute.value().toString();
            }
            reader.skipCurrentElement();
        } else if (name == "link"_L1 && !isSparkle(reader)) {
            item.link = reader.readElementText();
        } else if (isSparkle(reader) && name == "shortVersionString"_L1) {
            item.shortVersion = reader.readElementText();
        } else if (isSparkle(reader) && name == "version"_L1) {
            item.version = reader.readElementText();
        } else if (isSparkle(reader) && name == "releaseNotesLink"_L1) {
            item.releaseNotes = reader.readElementText();
        } else {
            reader.skipCurrentElement();
        }
    }
    return item;
}

} // namespace

Result<AppcastRelease> AppcastFeed::newest(const QByteArray &xml)
{
    QXmlStreamReader reader(xml);
    std::optional<AppcastRelease> best;
    QVersionNumber bestNumber;
    bool sawChannel = false;
    if (reader.readNextStartElement() && reader.name() == "rss"_L1) {
        while (reader.readNextStartElement()) {
            if (reader.name() != "channel"_L1) {
                reader.skipCurrentElement();
                continue;
            }
            sawChannel = true;
            while (reader.readNextStartElement()) {
                if (reader.name() != "item"_L1) {
                    reader.skipCurrentElement();
                    continue;
                }
                const Item item = readItem(reader);
                const QString version =
                    (item.shortVersion.isEmpty() ? item.version : item.shortVersion).trimmed();
                const QVersionNumber number = QVersionNumber::fromString(version).normalized();
                if (number.isNull() || (best && number <= bestNumber))
                    continue;
                QUrl page = webPage(item.link);
                if (page.isEmpty())
                    page = webPage(item.releaseNotes);
                if (page.isEmpty())
                    page = webPage(item.enclosure);
                best = AppcastRelease{version, page};
                bestNumber = number;
            }
        }
    }
    if (reader.hasError())
        return ZelError{errorDomain, 1,
                        tr("The update feed is not valid XML (line %1: %2).")
                            .arg(reader.lineNumber())
                            .arg(reader.errorString())};
    if (!sawChannel)
        return ZelError{errorDomain, 2, tr("The update feed is not an RSS feed.")};
    if (!best)
        return ZelError{errorDomain, 3, tr("The update feed lists no version.")};
    return *best;
}
