// An empty window, made as the program makes its own: what everything else is measured against.

#include <QApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

int main(int argc, char *argv[])
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    QQmlEngine engine;
    QQmlComponent component(
        &engine,
        QUrl(QStringLiteral("qrc:/qt/qml/TimeTracker/Benchmarks/emptywindow/EmptyWindow.qml")));
    const std::unique_ptr<QObject> window(component.create());
    return window ? QApplication::exec() : EXIT_FAILURE;
}
