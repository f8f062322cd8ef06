#include "FixtureServer.h"
#include "ImageCache.h"
#include "LogoWorker.h"
#include "SvgBudget.h"

#include <QBuffer>
#include <QDirIterator>
#include <QImage>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::Literals::StringLiterals;

namespace {

QByteArray encoded(const char *format, QSize size = {32, 32})
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::darkGreen);
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, format);
    return bytes;
}

// A 68-byte PNG whose header claims 20000 x 20000: a decompression bomb's calling card.
const QByteArray hugePNG = QByteArray::fromBase64(
    "iVBORw0KGgoAAAANSUhEUgAATiAAAE4gCAYAAADjcEY5AAAAC0lEQVR4nGNgAAIAAAUAAXpeqz8AAAAASUVORK5CYII=");

const QByteArray svg = "<svg xmlns='http://www.w3.org/2000/svg' width='40' height='40'>"
                       "<circle cx='20' cy='20' r='18' fill='#1f5fa8'/></svg>";

QByteArray svgWith(const QByteArray &content)
{
    return "<svg xmlns='http://www.w3.org/2000/svg' xmlns:xlink='http://www.w3.org/1999/xlink' "
           "width='40' height='40'>" +
           content + "</svg>";
}

// Runs a prefetch and waits for its completion.
bool prefetched(ImageCache &cache, const QList<QUrl> &urls)
{
    bool done = false;
    cache.prefetch(urls, [&done] { done = true; });
    return QTest::qWaitFor([&] { return done; }, 10000);
}

QStringList filesUnder(const QString &root)
{
    QStringList files;
    QDirIterator it(root, QDir::Files | QDir::Hidden, QDirIterator::Subdirectories);
    while (it.hasNext())
        files.append(QDir(root).relativeFilePath(it.next()));
    files.sort();
    return files;
}

} // namespace

class ImageCacheTest : public QObject {
    Q_OBJECT

    QTemporaryDir m_root;
    std::unique_ptr<FixtureServer> m_server;
    QString m_folder;

    QUrl url(const QString &path) const { return QUrl(m_server->baseURL() + path); }

private slots:
    void init()
    {
        QVERIFY(m_root.isValid());
        QDir(m_root.path()).removeRecursively();
        QDir().mkpath(m_root.path());
        m_folder = m_root.filePath("ZelMenuBar/logos");
        m_server = std::make_unique<FixtureServer>();
        m_server->scriptDefault(
            {200, encoded("PNG"), {}, FixtureResponse::Delivery::Whole, "image/png"});
    }

    void formatsDecodeAndLandOnDisk_data()
    {
        QTest::addColumn<QByteArray>("body");
        QTest::newRow("PNG") << encoded("PNG");
        QTest::newRow("JPEG") << encoded("JPEG");
        QTest::newRow("WebP") << encoded("WEBP");
        QTest::newRow("SVG") << svg;
    }

    void formatsDecodeAndLandOnDisk()
    {
        QFETCH(QByteArray, body);
        m_server->script("/logos/team", {200, body});
        ImageCache cache(m_folder);
        QVERIFY(prefetched(cache, {url("/logos/team")}));
        QVERIFY(!cache.image("team").isNull());
        QFile file(m_folder + "/team");
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), body);
    }

    void nothingToFetchCompletesAtOnce()
    {
        ImageCache cache(m_folder);
        bool done = false;
        cache.prefetch({}, [&done] { done = true; });
        QVERIFY(done);

        QVERIFY(prefetched(cache, {url("/logos/a.png")}));
        done = false;
        cache.prefetch({url("/logos/a.png?v=2"), url("/other/a.png")}, [&done] { done = true; });
        QVERIFY2(done, "a URL differing only in query or folder is a memory hit");
        QCOMPARE(m_server->requestedPaths(), QStringList{"/logos/a.png"});
    }

    void rejectedBodiesAreNeverWritten_data()
    {
        QTest::addColumn<FixtureResponse>("response");
        QTest::newRow("HTML page") << FixtureResponse{200, "<html>moved</html>"};
        QTest::newRow("20000 x 20000 PNG") << FixtureResponse{200, hugePNG};
        QTest::newRow("endless body")
            << FixtureResponse{200, encoded("PNG"), {}, FixtureResponse::Delivery::Endless};
        QTest::newRow("SVG reading a local file")
            << FixtureResponse{200, svgWith("<image xlink:href='/etc/hostname' width='9' "
                                            "height='9'/>")};
        QTest::newRow("SVG over 256 KiB")
            << FixtureResponse{200, svgWith("<!--" + QByteArray(300 * 1024, 'x') + "-->")};
    }

    void rejectedBodiesAreNeverWritten()
    {
        QFETCH(FixtureResponse, response);
        m_server->script("/logos/bad.png", response);
        ImageCache cache(m_folder);
        QVERIFY(prefetched(cache, {url("/logos/bad.png")}));
        QVERIFY(!cache.contains("bad.png"));
        QVERIFY(filesUnder(m_root.path()).isEmpty());

        // The failure is remembered: the next prefetch does not ask again.
        QVERIFY(prefetched(cache, {url("/logos/bad.png")}));
        QCOMPARE(m_server->requestCount("/logos/bad.png"), 1);
    }

    // What failed for now is tried at the next reload of a list, not sooner; what can never show
    // waits longer.
    void failuresAndTheNextReload_data()
    {
        QTest::addColumn<FixtureResponse>("response");
        QTest::addColumn<bool>("triedAgain");
        QTest::newRow("500") << FixtureResponse{500, "broken"} << true;
        QTest::newRow("408") << FixtureResponse{408, "too slow"} << true;
        QTest::newRow("429") << FixtureResponse{429, "slow down"} << true;
        QTest::newRow("dropped mid-body")
            << FixtureResponse{200, encoded("PNG"), {}, FixtureResponse::Delivery::DropMidBody}
            << true;
        QTest::newRow("404") << FixtureResponse{404, "no such logo"} << false;
        QTest::newRow("a logo under a 300") << FixtureResponse{300, encoded("PNG")} << false;
        QTest::newRow("not an image") << FixtureResponse{200, "<html>moved</html>"} << false;
    }

    void failuresAndTheNextReload()
    {
        QFETCH(FixtureResponse, response);
        QFETCH(bool, triedAgain);
        m_server->script("/logos/late.png", response);
        ImageCache cache(m_folder);
        QSignalSpy stored(&cache, &ImageCache::logoStored);
        QVERIFY(prefetched(cache, {url("/logos/late.png")}));
        QVERIFY(!cache.contains("late.png"));
        m_server->script("/logos/late.png", {200, encoded("PNG")});
        cache.fetchForBadge(url("/logos/late.png")); // a badge does not ask again
        QVERIFY(prefetched(cache, {url("/logos/other.png")}));
        QCOMPARE(m_server->requestCount("/logos/late.png"), 1);
        QVERIFY(prefetched(cache, {url("/logos/late.png")})); // the next reload
        QCOMPARE(m_server->requestCount("/logos/late.png"), triedAgain ? 2 : 1);
        QCOMPARE(cache.contains("late.png"), triedAgain);
        QCOMPARE(stored.count(), triedAgain ? 2 : 1);
    }

    // Drawn elements and depth, each at its limit and one past it.
    void svgBudget_data()
    {
        QTest::addColumn<QByteArray>("svg");
        QTest::addColumn<bool>("allowed");
        const auto shapes = [](int count) { return QByteArray("<rect/>").repeated(count); };
        const auto nested = [](int levels) {
            return QByteArray("<g>").repeated(levels) + QByteArray("</g>").repeated(levels);
        };
        // The root element counts as one.
        QTest::newRow("10,000 elements") << svgWith(shapes(9999)) << true;
        QTest::newRow("10,001 elements") << svgWith(shapes(10000)) << false;
        QTest::newRow("a reference cycle")
            << svgWith("<g id='a'><use xlink:href='#b'/></g><g id='b'><use xlink:href='#a'/></g>")
            << false;
        QTest::newRow("64 levels deep") << svgWith(nested(63)) << true;
        QTest::newRow("65 levels deep") << svgWith(nested(64)) << false;
    }

    void svgBudget()
    {
        QFETCH(QByteArray, svg);
        QTEST(SvgBudget::allows(svg), "allowed");
    }

    void onlyWebLogosAreFetched_data()
    {
        QTest::addColumn<QString>("url");
        QTest::newRow("file") << u"file://%1/logos/local.png"_s;
        QTest::newRow("data") << u"data:image/png;base64,iVBORw0KGgo="_s;
    }

    void onlyWebLogosAreFetched()
    {
        QFETCH(QString, url);
        QDir().mkpath(m_root.filePath("logos"));
        QFile local(m_root.filePath("logos/local.png"));
        QVERIFY(local.open(QIODevice::WriteOnly) && local.write(encoded("PNG")) > 0);
        local.close();
        ImageCache cache(m_folder);
        bool done = false;
        cache.prefetch({QUrl(url.arg(m_root.path()))}, [&done] { done = true; });
        QVERIFY2(done, "nothing to fetch, so the completion runs at once");
        QVERIFY(!cache.contains("local.png"));
    }

    void memoryKeepsTheRecentLogosAtBadgeSize()
    {
        m_server->scriptDefault({200, encoded("PNG", {512, 512})});
        ImageCache cache(m_folder);
        QList<QUrl> urls;
        for (int i = 0; i < 400; ++i)
            urls.append(url(u"/logos/%1.png"_s.arg(i)));
        QVERIFY(prefetched(cache, urls));
        QCOMPARE(cache.image("399.png").size(),
                 QSize(LogoWorker::badgeSide, LogoWorker::badgeSide));
        qint64 held = 0;
        for (int i = 0; i < 400; ++i)
            held += cache.image(u"%1.png"_s.arg(i)).sizeInBytes();
        QVERIFY2(held <= ImageCache::memoryBudgetBytes, qPrintable(QString::number(held)));
        QVERIFY(!cache.contains("0.png"));
    }

    void hostileNamesStayInMemory_data()
    {
        QTest::addColumn<QString>("path");
        QTest::addColumn<QString>("key");
        QTest::addColumn<QStringList>("files"); // what may be written, relative to the root

        QTest::newRow("dot dot") << u"/logos/%2e%2e"_s << u".."_s << QStringList{};
        QTest::newRow("encoded slash") << u"/logos/..%2F..%2Fescape.png"_s << u"escape.png"_s
                                       << QStringList{"ZelMenuBar/logos/escape.png"};
        QTest::newRow("300 characters") << "/logos/" + QString(296, u'x') + ".png"
                                        << QString(296, u'x') + ".png" << QStringList{};
    }

    void hostileNamesStayInMemory()
    {
        QFETCH(QString, path);
        QFETCH(QString, key);
        ImageCache cache(m_folder);
        const QUrl logo(m_server->baseURL() + path, QUrl::StrictMode);
        QCOMPARE(ImageCache::keyFor(logo), key);
        QVERIFY(prefetched(cache, {logo}));
        QVERIFY(cache.contains(key));
        QTEST(filesUnder(m_root.path()), "files");
    }

    void restartReadsFromDisk()
    {
        {
            ImageCache first(m_folder);
            QVERIFY(prefetched(first, {url("/logos/d.png"), url("/logos/e.svg")}));
        }
        m_server.reset(); // no network from here on
        ImageCache second(m_folder);
        QVERIFY(prefetched(second, {QUrl("http://127.0.0.1:9/logos/d.png"),
                                    QUrl("http://127.0.0.1:9/logos/e.svg")}));
        QVERIFY(second.contains("d.png"));
        QVERIFY(second.contains("e.svg"));
    }

    // The worker's thread, and its network manager's, run only while logos are outstanding.
    void threadsRunOnlyWhileLogosAreOutstanding()
    {
        const auto threads = [] { return QDir(u"/proc/self/task"_s).count(); };
        const uint idle = threads();
        ImageCache cache(m_folder);
        for (const QString &path : {u"/logos/f.png"_s, u"/logos/g.png"_s}) {
            QVERIFY(prefetched(cache, {url(path)}));
            QTRY_VERIFY(threads() <= idle);
        }
    }

    void destroyingMidDownloadDoesNotWait()
    {
        m_server->script("/logos/slow.png", {200, encoded("PNG"), std::chrono::seconds(20)});
        auto cache = std::make_unique<ImageCache>(m_folder);
        cache->prefetch({url("/logos/slow.png")}, [] { QFAIL("completion after destruction"); });
        QTRY_COMPARE(m_server->requestCount("/logos/slow.png"), 1);
        QElapsedTimer timer;
        timer.start();
        cache.reset();
        QVERIFY(timer.elapsed() < 5000);
        QTest::qWait(50);
    }
};

QTEST_MAIN(ImageCacheTest)
#include "tst_imagecache.moc"
