#include "LogoWorker.h"

#include <QBuffer>
#include <QDir>
#include <QEventLoop>
#include <QFile>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSaveFile>

LogoWorker::LogoWorker(QString cacheDir, QObject *receiver)
    : m_cacheDir(std::move(cacheDir))
    , m_receiver(receiver)
{
    setObjectName(QStringLiteral("ZelMenuBar.ImageCache"));
    start(QThread::LowPriority);
}

LogoWorker::~LogoWorker()
{
    stop();
}

void LogoWorker::stop()
{
    {
        QMutexLocker lock(&m_mutex);
        m_stopping = true;
        m_jobs.clear();
    }
    m_jobsAvailable.wakeOne();
    quit(); // also ends a download's event loop, so that stopping never waits for the network
    wait();
}

void LogoWorker::submit(Job job)
{
    {
        QMutexLocker lock(&m_mutex);
        m_jobs.push_back(std::move(job));
    }
    m_jobsAvailable.wakeOne();
}

std::optional<LogoWorker::Job> LogoWorker::nextJob()
{
    QMutexLocker lock(&m_mutex);
    while (m_jobs.empty() && !m_stopping)
        m_jobsAvailable.wait(&m_mutex);
    if (m_stopping)
        return std::nullopt;
    Job job = std::move(m_jobs.front());
    m_jobs.pop_front();
    return job;
}

void LogoWorker::run()
{
    QNetworkAccessManager network;
    while (std::optional<Job> job = nextJob()) {
        std::optional<QImage> image = load(*job, network);
        QMetaObject::invokeMethod(
            m_receiver, [done = std::move(job->done), image = std::move(image)] { done(image); },
            Qt::QueuedConnection);
    }
}

bool LogoWorker::isStorableKey(const QString &key)
{
    return !key.isEmpty() && key != QLatin1StringView(".") && key != QLatin1StringView("..") &&
           !key.contains(u'/') && !key.contains(u'\\') && !key.contains(QChar(0)) &&
           key.toUtf8().size() <= 255;
}

std::optional<QImage> LogoWorker::decode(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer);
    // The header's size decides, so that a small file claiming a huge image is never inflated.
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > maximumSide || size.height() > maximumSide)
        return std::nullopt;
    QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;
    return image;
}

std::optional<QImage> LogoWorker::load(const Job &job, QNetworkAccessManager &network)
{
    const bool storable = isStorableKey(job.key);
    const QString path = m_cacheDir + u'/' + job.key;
    if (storable) {
        QFile file(path);
        if (file.size() <= maximumDownloadBytes && file.open(QIODevice::ReadOnly)) {
            if (auto image = decode(file.readAll()))
                return image;
        }
    }

    const QByteArray bytes = download(job.url, network);
    auto image = decode(bytes);
    if (image && storable) {
        QSaveFile file(path);
        if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size())
            file.commit();
    }
    return image;
}

QByteArray LogoWorker::download(const QUrl &url, QNetworkAccessManager &network)
{
    QNetworkRequest request(url);
    // A stalled server must not hold up every other logo behind it.
    request.setTransferTimeout(30000);
    QNetworkReply *reply = network.get(request);
    QEventLoop loop;
    connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    connect(reply, &QNetworkReply::downloadProgress, reply, [reply](qint64 received, qint64) {
        if (received > maximumDownloadBytes)
            reply->abort();
    });
    if (!reply->isFinished())
        loop.exec();
    const QByteArray bytes = reply->isFinished() && reply->error() == QNetworkReply::NoError
                                 ? reply->readAll()
                                 : QByteArray();
    delete reply;
    return bytes;
}
