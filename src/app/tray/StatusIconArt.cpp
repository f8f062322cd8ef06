#include "StatusIconArt.h"

#include <QPainter>
#include <QSvgRenderer>

QImage StatusIconArt::bat(int side)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(QStringLiteral(":/zel-menubar.svg"));
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

QColor StatusIconArt::dotColour(State state, bool offline)
{
    if (offline)
        return QColor(0x8a, 0x8a, 0x8a);
    switch (state) {
    case State::Live:
        return QColor(0xd3, 0x2f, 0x2f);
    case State::Delayed:
        return QColor(0xf2, 0xb7, 0x05);
    case State::Quiet:
        break;
    }
    return QColor();
}

QString StatusIconArt::nameFor(State state, bool offline)
{
    QString name = QStringLiteral("zel-menubar");
    if (offline)
        return name + QStringLiteral("-offline");
    switch (state) {
    case State::Live:
        return name + QStringLiteral("-live");
    case State::Delayed:
        return name + QStringLiteral("-delayed");
    case State::Quiet:
        break;
    }
    return name;
}

QImage StatusIconArt::image(State state, bool offline, int side)
{
    QImage image = bat(side);
    const QColor dot = dotColour(state, offline);
    if (dot.isValid()) {
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        const qreal radius = side * 0.2;
        painter.setPen(QPen(Qt::white, qMax(1.0, side / 16.0)));
        painter.setBrush(dot);
        painter.drawEllipse(QPointF(radius + 1, radius + 1), radius, radius);
    }
    return image;
}

QIcon StatusIconArt::iconFor(State state, bool offline)
{
    QIcon icon;
    for (int side : {16, 22, 24, 32, 48, 64})
        icon.addPixmap(QPixmap::fromImage(image(state, offline, side)));
    return icon;
}
