#pragma once

#include <deque>
#include <functional>
#include <optional>
#include <QImage>
#include <QMutex>
#include <QThread>
#include <QUrl>
#include <QWaitCondition>

class QNetworkAccessManager;

// The logo cache's one background thread: for each job, in submission order, the disk first,
// then the network, then decoding, then writing the file.
class LogoWorker : public QThread {
    Q_OBJECT

public:
    struct Job {
        QUrl url;
        QString key;
        // Called on the receiver's thread with the image, or nothing when it could not be had.
        std::function<void(std::optional<QImage>)> done;
    };

    static constexpr qint64 maximumDownloadBytes = 4 * 1024 * 1024;
    static constexpr int maximumSide = 2048; // larger images are refused before decoding

    LogoWorker(QString cacheDir, QObject *receiver);
    ~LogoWorker() override;
    // Drops waiting jobs and ends the thread; the job under way is finished first.
    void stop();

    void submit(Job job);
    // True when the key can safely name a file inside the cache folder.
    static bool isStorableKey(const QString &key);
    static std::optional<QImage> decode(const QByteArray &bytes);

protected:
    void run() override;

private:
    std::optional<Job> nextJob();
    std::optional<QImage> load(const Job &job, QNetworkAccessManager &network);
    QByteArray download(const QUrl &url, QNetworkAccessManager &network);

    const QString m_cacheDir;
    QObject *const m_receiver;
    QMutex m_mutex;
    QWaitCondition m_jobsAvailable;
    std::deque<Job> m_jobs;
    bool m_stopping = false;
};
