#include "ImageCache.h"

#include "LogoWorker.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

using namespace Qt::Literals::StringLiterals;

ImageCache &ImageCache::shared()
{
    static ImageCache cache([] {
        const QString base = QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation);
        if (base.isEmpty())
            qFatal("ImageCache: the system reports no cache folder");
        return base + QStringLiteral("/ZelMenuBar/logos");
    }());
    return cache;
}

ImageCache::ImageCache(const QString &cacheDir, QObject *parent)
    : QObject(parent)
{
    // A folder that cannot be made only means logos are fetched again on the next run.
    QDir().mkpath(cacheDir);
    m_worker = std::make_unique<LogoWorker>(cacheDir, this);
    // Decoding an SVG logo paints, which needs the application, and the thread's font caches
    // must go before the statics that hold them: stop when the application quits or, where
    // nothing ran its event loop to the end, when it is destroyed.
    if (QCoreApplication *app = QCoreApplication::instance()) {
        connect(app, &QCoreApplication::aboutToQuit, this, [this] { m_worker->stop(); });
        connect(app, &QObject::destroyed, this, [this] { m_worker->stop(); });
    }
}

ImageCache::~ImageCache() = default;

QString ImageCache::keyFor(const QUrl &url)
{
    // The last non-empty component, so that ".../teams/nth/" is "nth", not a key shared by all.
    const QStringList components = url.path(QUrl::FullyDecoded).split(u'/', Qt::SkipEmptyParts);
    return components.isEmpty() ? QString() : components.last();
}

QImage ImageCache::image(const QString &key) const
{
    const QImage *image = m_memory.object(key);
    return image ? *image : QImage();
}

struct ImageCache::Group {
    qsizetype outstanding;
    std::function<void()> completion;
};

void ImageCache::prefetch(const QList<QUrl> &urls, std::function<void()> completion)
{
    QList<std::pair<QUrl, QString>> needed;
    for (const QUrl &url : urls) {
        // Anything but the web would read local files or run scheme handlers.
        if (url.scheme() != "http"_L1 && url.scheme() != "https"_L1)
            continue;
        QString key = keyFor(url);
        if (!m_memory.contains(key) && !recentlyFailed(key))
            needed.append({url, std::move(key)});
    }
    if (needed.isEmpty()) {
        if (completion)
            completion();
        return;
    }

    auto group = std::make_shared<Group>(Group{needed.size(), std::move(completion)});
    for (const auto &[url, key] : needed) {
        // One download per logo, however many prefetches ask for it meanwhile.
        const bool underWay = m_pending.contains(key);
        m_pending[key].append(group);
        if (!underWay) {
            m_worker->submit(
                {url, key, [this, key](std::optional<QImage> image) { stored(key, image); }});
        }
    }
}

void ImageCache::stored(const QString &key, const std::optional<QImage> &image)
{
    if (image) {
        m_memory.insert(key, new QImage(*image), qMax<qsizetype>(1, image->sizeInBytes()));
    } else {
        // Many distinct failing logos must not grow this without end either.
        if (m_failed.size() >= 1024)
            m_failed.removeIf([](const auto &entry) { return entry.value().hasExpired(); });
        if (m_failed.size() >= 1024)
            m_failed.clear();
        m_failed.insert(key, QDeadlineTimer(failureMemory));
    }
    for (const std::shared_ptr<Group> &group : m_pending.take(key)) {
        if (--group->outstanding == 0 && group->completion)
            group->completion();
    }
}

bool ImageCache::recentlyFailed(const QString &key)
{
    const auto failure = m_failed.constFind(key);
    if (failure == m_failed.cend())
        return false;
    if (!failure->hasExpired())
        return true;
    m_failed.erase(failure);
    return false;
}
