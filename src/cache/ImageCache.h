#pragma once

#include <functional>
#include <memory>
#include <QHash>
#include <QImage>
#include <QList>
#include <QObject>
#include <QUrl>

class LogoWorker;

// Team logos in two tiers: a table in memory, touched only on the main thread, and a folder of
// files; missing logos come from the network on one background thread.
class ImageCache : public QObject {
    Q_OBJECT

public:
    // The process-wide cache, in "ZelMenuBar/logos" under the user's cache folder.
    static ImageCache &shared();

    explicit ImageCache(const QString &cacheDir, QObject *parent = nullptr);
    ~ImageCache() override;

    // The last path component, percent-escapes decoded: the memory key and the file name.
    static QString keyFor(const QUrl &url);

    // Returns at once. Every logo not yet in memory is looked for on disk, then on the network.
    // The completion runs on the main thread after every store of this prefetch, or before this
    // returns when nothing needed fetching.
    void prefetch(const QList<QUrl> &urls, std::function<void()> completion = {});

    QImage image(const QString &key) const { return m_memory.value(key); }
    bool contains(const QString &key) const { return m_memory.contains(key); }

private:
    QHash<QString, QImage> m_memory;
    std::unique_ptr<LogoWorker> m_worker;
};
