#pragma once

#include <chrono>
#include <deque>
#include <functional>
#include <optional>
#include <QImage>
#include <QObject>
#include <QThread>
#include <QUrl>

class QNetworkAccessManager;

// The logo cache's background thread: for each logo, the disk first, then the network, then
// decoding at badge size, then writing the file. Several downloads run at once, each bounded
// in size and time, so that one slow or endless logo cannot hold up the others. The thread, and
// the network manager's own thread with it, run only while logos are outstanding: the app idles
// for hours between the few moments it needs them.
class LogoWorker : public QObject {
    Q_OBJECT

public:
    // Why a logo could not be had: for now (the network, the server's trouble, too slow), or
    // for as long as the server sends what it sends (refused, too large, no sane image).
    enum class Failure { Passing, Lasting };
    struct Job {
        QUrl url;
        QString key;
        // Called on the receiver's thread with the image, or with why there is none.
        std::function<void(std::optional<QImage>, Failure)> done;
    };

    static constexpr qint64 maximumDownloadBytes = 1024 * 1024;
    static constexpr qint64 maximumSvgBytes = 256 * 1024;
    static constexpr int maximumSide = 2048; // larger images are refused before decoding
    // A badge is 22 points; this covers screens up to about three device pixels a point.
    static constexpr int badgeSide = 64;
    static constexpr int concurrentDownloads = 4;
    static constexpr std::chrono::milliseconds stallTimeout{10'000};
    static constexpr std::chrono::milliseconds downloadDeadline{20'000};

    LogoWorker(QString cacheDir, QObject *receiver);
    ~LogoWorker() override;
    // Drops waiting jobs and ends the thread at once for good; no download is waited for.
    void stop();

    // Called on the receiver's thread, like every call below but stop().
    void submit(Job job);
    // True when the key can safely name a file inside the cache folder.
    static bool isStorableKey(const QString &key);
    // "png", "jpeg", "webp", "gif" or "svg" by the body's first bytes; empty for anything else.
    static QByteArray formatOf(const QByteArray &bytes);
    // The image scaled down to fit a badge, or nothing for what is not a cheap, sane image.
    static std::optional<QImage> decode(const QByteArray &bytes);

private:
    void run(Job job);
    void startDownloads();
    void downloaded(Job job, QByteArray bytes);
    void deliver(Job &job, std::optional<QImage> image, Failure failure = Failure::Lasting);

    void jobDelivered();

    const QString m_cacheDir;
    QObject *const m_receiver;
    QThread m_thread;
    // Only touched on the receiver's thread: jobs submitted and not yet delivered, and whether
    // the thread has ended for good.
    int m_outstanding = 0;
    bool m_stopped = false;
    // Only touched on m_thread.
    QNetworkAccessManager *m_network = nullptr;
    std::deque<Job> m_waiting;
    int m_downloads = 0;
};
