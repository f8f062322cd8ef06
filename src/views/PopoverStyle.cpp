#include "PopoverStyle.h"

#include <QQuickWindow>

void PopoverStyle::apply()
{
    if (qEnvironmentVariableIsEmpty("QT_QUICK_BACKEND"))
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}
