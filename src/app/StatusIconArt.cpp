#include "StatusIconArt.h"

#include <QPainter>
#include <QSvgRenderer>

using namespace Qt::Literals::StringLiterals;

StatusIconArt::State StatusIconArt::stateOf(const QString &title)
{
    if (title.contains(u"\U0001F534"_s))
        return State::Live;
    if (title.endsWith(u"Delayed"_s))
        return State::Delayed;
    return State::Quiet;
}

QImage StatusIconArt::bat(int side)
{
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QSvgRenderer renderer(u":/zel-menubar.svg"_s);
    QPainter painter(&image);
    renderer.render(&painter);
    return image;
}

QIcon StatusIconArt::iconFor(State state)
{
    QIcon icon;
    for (int side : {16, 22, 24, 32, 48, 64}) {
        QImage image = bat(side);
        if (state != State::Quiet) {
            QPainter painter(&image);
            painter.setRenderHint(QPainter::Antialiasing);
            const qreal radius = side * 0.2;
            painter.setPen(QPen(Qt::white, qMax(1.0, side / 16.0)));
            painter.setBrush(state == State::Live ? QColor(0xd3, 0x2f, 0x2f)
                                                  : QColor(0xf2, 0xb7, 0x05));
            painter.drawEllipse(QPointF(radius + 1, radius + 1), radius, radius);
        }
        icon.addPixmap(QPixmap::fromImage(image));
    }
    return icon;
}
