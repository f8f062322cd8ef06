#include "ImageCache.h"

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
    fetch(urls, std::move(completion), true);
}

void ImageCache::fetchForBadge(const QUrl &url)
{
    fetch({url}, {}, false);
}

void ImageCache::fetch(const QList<QUrl> &urls, std::function<void()> completion, bool isReload)
{
    QList<std::pair<QString, QString>> needed; // URL, key
    for (const QUrl &url : urls) {
        // Anything but the web would read local files or run scheme handlers.
        if (url.scheme() != "http"_L1 && url.scheme() != "https"_L1)
            continue;
        QString key = keyFor(url);
        const QString address = url.toString();
        if (isReload)
            m_failedForNow.remove(address);
        if (!m_memory.contains(key) && !recentlyFailed(address) &&
            !m_failedForNow.contains(address))
            needed.append({address, std::move(key)});
    }
    if (needed.isEmpty()) {
        if (completion)
            completion();
        return;
    }

    auto group = std::make_shared<Group>(Group{needed.size(), std::move(completion)});
    for (const auto &[address, key] : needed) {
        // One download per logo, however many prefetches ask for it meanwhile.
        const bool underWay = m_pending.contains(address);
        Pending &pending = m_pending[address];
        pending.key = key;
        pending.groups.append(group);
        if (!underWay) {
            m_worker->submit(
                {QUrl(address), key,
                 [this, address](std::optional<QImage> image, LogoWorker::Failure failure) {
                     stored(address, image, failure);
                 }});
        }
    }
}

void ImageCache::stored(const QString &url, const std::optional<QImage> &image,
                        LogoWorker::Failure failure)
{
    const Pending pending = m_pending.take(url);
    if (image) {
        m_memory.insert(pending.key, new QImage(*image), qMax<qsizetype>(1, image->sizeInBytes()));
        emit logoStored(pending.key);
    } else if (failure == LogoWorker::Failure::Passing) {
        m_failedForNow.insert(url);
    } else {
        // Many distinct failing logos must not grow these without end either.
        if (m_failed.size() >= 1024)
            m_failed.removeIf([](const auto &entry) { return entry.value().hasExpired(); });
        if (m_failed.size() >= 1024)
            m_failed.clear();
        m_failed.insert(url, QDeadlineTimer(failureMemory));
    }
    if (m_failedForNow.size() > 1024)
        m_failedForNow.clear();
    for (const std::shared_ptr<Group> &group : pending.groups) {
        if (--group->outstanding == 0 && group->completion)
            group->completion();
    }
}

bool ImageCache::recentlyFailed(const QString &url)
{
    const auto failure = m_failed.constFind(url);
    if (failure == m_failed.cend())
        return false;
    if (!failure->hasExpired())
        return true;
    m_failed.erase(failure);
    return false;
}
