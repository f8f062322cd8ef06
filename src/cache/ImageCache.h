#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <QCache>
#include <QDeadlineTimer>
#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QUrl>

class LogoWorker;

// Team logos in two tiers: a table in memory, touched only on the main thread, and a folder of
// files; missing logos come from the network on one background thread. The memory tier keeps
// the most recently used logos at badge size up to a fixed budget; a logo that could not be had
// is not asked for again for a while, and only http and https logos are fetched at all.
class ImageCache : public QObject {
    Q_OBJECT

public:
    // The process-wide cache, in "ZelMenuBar/logos" under the user's cache folder.
    static ImageCache &shared();

    explicit ImageCache(const QString &cacheDir, QObject *parent = nullptr);
    ~ImageCache() override;

    // The last non-empty path component, percent-escapes decoded: the memory key and the file
    // name.
    static QString keyFor(const QUrl &url);

    static constexpr qint64 memoryBudgetBytes = 4 * 1024 * 1024;
    static constexpr std::chrono::minutes failureMemory{10};

    // Returns at once. Every logo not yet in memory is looked for on disk, then on the network.
    // The completion runs on the main thread after every store of this prefetch, or before this
    // returns when nothing needed fetching.
    void prefetch(const QList<QUrl> &urls, std::function<void()> completion = {});

    QImage image(const QString &key) const;
    bool contains(const QString &key) const { return m_memory.contains(key); }

private:
    struct Group;
    bool recentlyFailed(const QString &key);
    void stored(const QString &key, const std::optional<QImage> &image);

    // QCache moves a logo to the front on every look-up.
    mutable QCache<QString, QImage> m_memory{memoryBudgetBytes};
    // Logos on their way, with the prefetches that wait for each.
    QHash<QString, QList<std::shared_ptr<Group>>> m_pending;
    QHash<QString, QDeadlineTimer> m_failed;
    std::unique_ptr<LogoWorker> m_worker;
};
