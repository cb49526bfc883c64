#include "app/windows/makewindow.h"

#include "model/fatalerror.h"

#include <QQmlComponent>
#include <QQmlEngine>

std::unique_ptr<QQuickWindow> makeWindow(QQmlEngine &engine, const QUrl &url,
                                         const QVariantMap &properties)
{
    QQmlComponent component(&engine, url);
    // With initial properties, Qt 6.4 crashes on a component that has errors.
    auto *const window =
        component.isReady()
            ? qobject_cast<QQuickWindow *>(component.createWithInitialProperties(properties))
            : nullptr;
    if (!window)
        fatalError(qPrintable(component.errorString()));
    QQmlEngine::setObjectOwnership(window, QQmlEngine::CppOwnership);
    return std::unique_ptr<QQuickWindow>(window);
}
