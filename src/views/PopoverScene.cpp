#include "PopoverScene.h"

#include "PopoverController.h"

#include <QQmlEngine>
#include <QQuickView>

bool PopoverScene::load(QQuickView &view, PopoverController &controller)
{
    view.engine()->addImportPath(QStringLiteral("qrc:/qt/qml"));
    view.setInitialProperties({{QStringLiteral("controller"), QVariant::fromValue(&controller)}});
    view.setSource(QUrl(QStringLiteral("qrc:/qt/qml/ZelMenuBar/qml/TodayView.qml")));
    return view.status() == QQuickView::Ready;
}
