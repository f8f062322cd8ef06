#include "LogoWorker.h"

#include "BoundedDownload.h"
#include "SvgBudget.h"

#include <QBuffer>
#include <QFile>
#include <QImageReader>
#include <QNetworkAccessManager>
#include <QNetworkReply>
#include <QSaveFile>

LogoWorker::LogoWorker(QString cacheDir, QObject *receiver)
    : m_cacheDir(std::move(cacheDir))
    , m_receiver(receiver)
{
    m_thread.setObjectName(QStringLiteral("ZelMenuBar.ImageCache"));
    moveToThread(&m_thread);
    connect(&m_thread, &QThread::started, this,
            [this] { m_network = new QNetworkAccessManager(this); });
    connect(&m_thread, &QThread::finished, this, [this] {
        delete m_network; // aborts what is still downloading, without calling back
        m_network = nullptr;
        m_waiting.clear();
    });
}

LogoWorker::~LogoWorker()
{
    stop();
}

void LogoWorker::stop()
{
    m_stopped = true;
    m_thread.quit();
    m_thread.wait();
}

void LogoWorker::submit(Job job)
{
    if (m_stopped)
        return;
    if (m_outstanding++ == 0) {
        // Told to end with nothing left to do, or never started: the wait is short.
        m_thread.wait();
        m_thread.start(QThread::LowPriority);
    }
    QMetaObject::invokeMethod(
        this, [this, job = std::move(job)]() mutable { run(std::move(job)); },
        Qt::QueuedConnection);
}

bool LogoWorker::isStorableKey(const QString &key)
{
    return !key.isEmpty() && key != QLatin1StringView(".") && key != QLatin1StringView("..") &&
           !key.contains(u'/') && !key.contains(u'\\') && !key.contains(QChar(0)) &&
           key.toUtf8().size() <= 255;
}

std::optional<QImage> LogoWorker::decode(const QByteArray &bytes)
{
    const QByteArray format = formatOf(bytes);
    if (format.isEmpty())
        return std::nullopt;
    if (format == "svg" && (bytes.size() > maximumSvgBytes || !SvgBudget::allows(bytes)))
        return std::nullopt;
    QBuffer buffer;
    buffer.setData(bytes);
    buffer.open(QIODevice::ReadOnly);
    // Named, so that Qt loads that one image plugin and not every one it has to ask each.
    QImageReader reader(&buffer, format);
    reader.setAutoDetectImageFormat(false);
    // The header's size decides, so that a small file claiming a huge image is never inflated.
    const QSize size = reader.size();
    if (!size.isValid() || size.width() > maximumSide || size.height() > maximumSide)
        return std::nullopt;
    if (size.width() > badgeSide || size.height() > badgeSide)
        reader.setScaledSize(size.scaled(badgeSide, badgeSide, Qt::KeepAspectRatio));
    QImage image = reader.read();
    if (image.isNull())
        return std::nullopt;
    return image;
}

QByteArray LogoWorker::formatOf(const QByteArray &bytes)
{
    if (bytes.startsWith("\x89PNG\r\n\x1a\n"))
        return "png";
    if (bytes.startsWith("\xff\xd8\xff"))
        return "jpeg";
    if (bytes.startsWith("RIFF") && bytes.mid(8, 4) == "WEBP")
        return "webp";
    if (bytes.startsWith("GIF87a") || bytes.startsWith("GIF89a"))
        return "gif";
    // Compressed SVG cannot be looked at before it is drawn, so it is not taken at all.
    const QByteArray head = bytes.left(4096).trimmed();
    if (head.startsWith('<') && head.contains("<svg"))
        return "svg";
    return {};
}

void LogoWorker::run(Job job)
{
    if (isStorableKey(job.key)) {
        QFile file(m_cacheDir + u'/' + job.key);
        if (file.size() <= maximumDownloadBytes && file.open(QIODevice::ReadOnly)) {
            if (auto image = decode(file.readAll())) {
                deliver(job, std::move(image));
                return;
            }
        }
    }
    m_waiting.push_back(std::move(job));
    startDownloads();
}

namespace {
// Nothing for a whole answer; otherwise whether asking again later may help.
std::optional<LogoWorker::Failure> failureOf(const QNetworkReply &reply,
                                             BoundedDownload::Outcome outcome)
{
    using Failure = LogoWorker::Failure;
    if (outcome == BoundedDownload::Outcome::TooLarge)
        return Failure::Lasting;
    if (outcome == BoundedDownload::Outcome::DeadlinePassed)
        return Failure::Passing;
    // No answer, or one cut short.
    if (reply.error() != QNetworkReply::NoError &&
        reply.error() < QNetworkReply::ContentAccessDenied)
        return Failure::Passing;
    const QVariant status = reply.attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (!status.isValid())
        return std::nullopt;
    const int code = status.toInt();
    if (code >= 200 && code < 300)
        return std::nullopt;
    // The server's own trouble, a timeout or a busy signal pass; a refusal or a missing logo
    // stays.
    return code >= 500 || code == 408 || code == 429 ? Failure::Passing : Failure::Lasting;
}
} // namespace

void LogoWorker::startDownloads()
{
    while (m_network && m_downloads < concurrentDownloads && !m_waiting.empty()) {
        Job job = std::move(m_waiting.front());
        m_waiting.pop_front();
        QNetworkRequest request(job.url);
        request.setTransferTimeout(int(stallTimeout.count()));
        ++m_downloads;
        BoundedDownload::start(m_network->get(request), {maximumDownloadBytes, downloadDeadline},
                               [this, job = std::move(job)](QNetworkReply &reply,
                                                            BoundedDownload::Outcome outcome,
                                                            QByteArray bytes) mutable {
                                   --m_downloads;
                                   const auto failure = failureOf(reply, outcome);
                                   if (failure)
                                       deliver(job, std::nullopt, *failure);
                                   else
                                       downloaded(std::move(job), std::move(bytes));
                                   startDownloads();
                               });
    }
}

void LogoWorker::downloaded(Job job, QByteArray bytes)
{
    std::optional<QImage> image = decode(bytes);
    if (image && isStorableKey(job.key)) {
        QSaveFile file(m_cacheDir + u'/' + job.key);
        if (file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size())
            file.commit();
    }
    deliver(job, std::move(image));
}

void LogoWorker::deliver(Job &job, std::optional<QImage> image, Failure failure)
{
    QMetaObject::invokeMethod(
        m_receiver,
        [this, done = std::move(job.done), image = std::move(image), failure] {
            done(image, failure);
            jobDelivered();
        },
        Qt::QueuedConnection);
}

void LogoWorker::jobDelivered()
{
    if (--m_outstanding == 0 && !m_stopped)
        m_thread.quit();
}
