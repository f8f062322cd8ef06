#pragma once

#include "LogoWorker.h"

#include <chrono>
#include <functional>
#include <memory>
#include <QCache>
#include <QDeadlineTimer>
#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QSet>
#include <QUrl>

// Team logos in two tiers: a table in memory, touched only on the main thread, and a folder of
// files; missing logos come from the network on one background thread. The memory tier keeps
// the most recently used logos at badge size up to a fixed budget. A logo that failed for a
// passing reason is tried again at the next reload of a list, never sooner; one that can never
// show (refused, too large, no image) is not asked for again for a while. Only http and https
// logos are fetched at all.
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

    // A list's reload. Returns at once. Every logo not yet in memory is looked for on disk, then
    // on the network. The completion runs on the main thread after every store of this
    // prefetch, or before this returns when nothing needed fetching.
    void prefetch(const QList<QUrl> &urls, std::function<void()> completion = {});
    // A badge's own look-up: the same, but a logo that failed is left for the next reload.
    void fetchForBadge(const QUrl &url);

    QImage image(const QString &key) const;
    bool contains(const QString &key) const { return m_memory.contains(key); }

signals:
    // A logo reached the memory tier.
    void logoStored(const QString &key);

private:
    struct Group;
    struct Pending {
        QString key;
        QList<std::shared_ptr<Group>> groups;
    };
    void fetch(const QList<QUrl> &urls, std::function<void()> completion, bool isReload);
    bool recentlyFailed(const QString &url);
    void stored(const QString &url, const std::optional<QImage> &image,
                LogoWorker::Failure failure);

    // QCache moves a logo to the front on every look-up.
    mutable QCache<QString, QImage> m_memory{memoryBudgetBytes};
    // Downloads on their way, by URL, with the prefetches that wait for each.
    QHash<QString, Pending> m_pending;
    // By URL: what can never show, for a while; what failed for now, until the next reload.
    QHash<QString, QDeadlineTimer> m_failed;
    QSet<QString> m_failedForNow;
    std::unique_ptr<LogoWorker> m_worker;
};
