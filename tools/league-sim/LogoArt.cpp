#include "LogoArt.h"

#include <QBuffer>
#include <QFont>
#include <QImage>
#include <QPainter>

namespace LogoArt {
namespace {

QString initials(const LeagueTeam &team)
{
    QString letters;
    for (const QString &word : team.name.split(u' ', Qt::SkipEmptyParts))
        letters += word.front();
    return letters.left(2);
}

} // namespace

QByteArray png(const LeagueTeam &team, int size)
{
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, size / 24.0));
    painter.setBrush(QColor(team.colour));
    const qreal inset = size / 16.0;
    painter.drawEllipse(QRectF(inset, inset, size - 2 * inset, size - 2 * inset));
    QFont font;
    font.setBold(true);
    font.setPixelSize(size * 3 / 8);
    painter.setFont(font);
    painter.drawText(image.rect(), Qt::AlignCenter, initials(team));
    painter.end();

    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    image.save(&buffer, "PNG");
    return bytes;
}

QByteArray svg(const LeagueTeam &team)
{
    return QStringLiteral("<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"128\" height=\"128\" "
                          "viewBox=\"0 0 128 128\">"
                          "<circle cx=\"64\" cy=\"64\" r=\"56\" fill=\"%1\" stroke=\"#ffffff\" "
                          "stroke-width=\"5\"/>"
                          "<text x=\"64\" y=\"64\" dy=\"0.35em\" text-anchor=\"middle\" "
                          "font-family=\"sans-serif\" font-weight=\"bold\" font-size=\"48\" "
                          "fill=\"#ffffff\">%2</text></svg>\n")
        .arg(team.colour, initials(team))
        .toUtf8();
}

} // namespace LogoArt
