#include "ApplicationActivation.h"

#include <QGuiApplication>

namespace {
QGuiApplication *guiApplication()
{
    return qobject_cast<QGuiApplication *>(QCoreApplication::instance());
}

bool applicationIsActive()
{
    return QGuiApplication::applicationState() == Qt::ApplicationActive;
}
} // namespace

void followApplicationActivation(QObject *context, std::function<void(bool active)> changed)
{
    QGuiApplication *application = guiApplication();
    if (!application)
        return;
    // Hidden, suspended and inactive all count as away; only a change of that is reported.
    QObject::connect(application, &QGuiApplication::applicationStateChanged, context,
                     [changed = std::move(changed),
                      active = applicationIsActive()](Qt::ApplicationState state) mutable {
                         const bool nowActive = state == Qt::ApplicationActive;
                         if (std::exchange(active, nowActive) != nowActive)
                             changed(nowActive);
                     });
}
