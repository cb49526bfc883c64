// An empty window, made as the program makes its own: what everything else is measured against.
// With the argument "least" it has the least in it that the layout asks of Qt.

#include <QApplication>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    QQmlEngine engine;
    const QString file = QApplication::arguments().value(1) == u"least" ? u"LeastWindow.qml"_s
                                                                        : u"EmptyWindow.qml"_s;
    QQmlComponent component(&engine,
                            QUrl(u"qrc:/qt/qml/TimeTracker/Benchmarks/emptywindow/"_s + file));
    const std::unique_ptr<QObject> window(component.create());
    return window ? QApplication::exec() : EXIT_FAILURE;
}
