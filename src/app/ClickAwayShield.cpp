#include "ClickAwayShield.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScreen>

ClickAwayShield::ClickAwayShield()
{
    QSurfaceFormat format = this->format();
    format.setAlphaBufferSize(8);
    setFormat(format);
    setTitle(QStringLiteral("Zel Menu Bar click-away"));
}

void ClickAwayShield::cover(QScreen *screen, bool bypassManager)
{
    // It must never take the focus from the popover it serves.
    Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint | Qt::WindowDoesNotAcceptFocus;
    if (bypassManager)
        flags |= Qt::BypassWindowManagerHint;
    setFlags(flags);
    setScreen(screen);
    setGeometry(screen->availableGeometry());
    show();
}

void ClickAwayShield::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.fillRect(QRect(QPoint(), size()), Qt::transparent);
}

void ClickAwayShield::mousePressEvent(QMouseEvent *event)
{
    event->accept();
    emit clicked();
}
