#include "CricketBadge.h"

#include "ImageCache.h"

#include <QPainter>
#include <QPainterPath>

CricketBadge::CricketBadge(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setImplicitSize(22, 22);
    setAntialiasing(true);
    connect(&ImageCache::shared(), &ImageCache::logoStored, this, &CricketBadge::logoStored);
}

void CricketBadge::setUrl(const QUrl &url)
{
    if (url == m_url)
        return;
    m_url = url;
    emit urlChanged();
    if (isComponentComplete())
        load();
}

void CricketBadge::componentComplete()
{
    QQuickPaintedItem::componentComplete();
    load();
}

void CricketBadge::load()
{
    show(QImage());
    if (!m_url.isValid() || m_url.isEmpty())
        return;
    ImageCache &cache = ImageCache::shared();
    const QString key = ImageCache::keyFor(m_url);
    if (cache.contains(key))
        show(cache.image(key));
    else
        cache.fetchForBadge(m_url);
}

void CricketBadge::logoStored(const QString &key)
{
    if (m_image.isNull() && !m_url.isEmpty() && key == ImageCache::keyFor(m_url))
        show(ImageCache::shared().image(key));
}

void CricketBadge::show(const QImage &image)
{
    const bool changed = image.isNull() != m_image.isNull();
    m_image = image;
    update();
    if (changed)
        emit showsLogoChanged();
}

void CricketBadge::paint(QPainter *painter)
{
    const QRectF frame(QPointF(0, 0), size());
    if (m_image.isNull()) {
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(Qt::NoPen);
        painter->setBrush(m_placeholderColor);
        painter->drawRoundedRect(frame, 3, 3);
        return;
    }
    QSizeF fitted = m_image.size();
    fitted.scale(frame.size(), Qt::KeepAspectRatio);
    const QRectF target(frame.center() - QPointF(fitted.width(), fitted.height()) / 2, fitted);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(target, m_image);
}
