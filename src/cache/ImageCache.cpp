#include "ImageCache.h"

#include "LogoWorker.h"

#include <QCoreApplication>
#include <QDir>
#include <QStandardPaths>

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
    return url.fileName(QUrl::FullyDecoded);
}

void ImageCache::prefetch(const QList<QUrl> &urls, std::function<void()> completion)
{
    QList<std::pair<QUrl, QString>> needed;
    for (const QUrl &url : urls) {
        QString key = keyFor(url);
        if (!m_memory.contains(key))
            needed.append({url, std::move(key)});
    }
    if (needed.isEmpty()) {
        if (completion)
            completion();
        return;
    }

    struct Group {
        qsizetype outstanding;
        std::function<void()> completion;
    };
    auto group = std::make_shared<Group>(Group{needed.size(), std::move(completion)});
    for (const auto &job : needed) {
        const QString &key = job.second;
        m_worker->submit({job.first, key, [this, group, key](std::optional<QImage> image) {
                              if (image)
                                  m_memory.insert(key, *image);
                              if (--group->outstanding == 0 && group->completion)
                                  group->completion();
                          }});
    }
}
