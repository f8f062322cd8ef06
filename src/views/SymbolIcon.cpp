#include "SymbolIcon.h"

#include <QImage>
#include <QPainter>
#include <QQuickWindow>
#include <QSvgRenderer>

SymbolIcon::SymbolIcon(QQuickItem *parent)
    : QQuickPaintedItem(parent)
{
    setImplicitSize(12, 12);
}

void SymbolIcon::setName(const QString &name)
{
    if (name == m_name)
        return;
    m_name = name;
    emit nameChanged();
    update();
}

void SymbolIcon::setColor(const QColor &color)
{
    if (color == m_color)
        return;
    m_color = color;
    emit colorChanged();
    update();
}

void SymbolIcon::paint(QPainter *painter)
{
    if (m_name.isEmpty())
        return;
    QSvgRenderer svg(QStringLiteral(":/qt/qml/ZelMenuBar/icons/%1.svg").arg(m_name));
    if (!svg.isValid())
        return;
    const qreal scale = window() ? window()->effectiveDevicePixelRatio() : 1.0;
    QImage glyph((size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied);
    glyph.setDevicePixelRatio(scale);
    glyph.fill(Qt::transparent);
    QPainter tint(&glyph);
    svg.render(&tint, QRectF(QPointF(0, 0), size()));
    // Keep the glyph's shape, take the requested colour.
    tint.setCompositionMode(QPainter::CompositionMode_SourceIn);
    tint.fillRect(QRectF(QPointF(0, 0), size()), m_color);
    tint.end();
    painter->drawImage(QPointF(0, 0), glyph);
}
