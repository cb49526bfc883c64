#include "tests/support/qmltest.h"

#include <QMutex>
#include <QQmlComponent>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <utility>

using namespace Qt::StringLiterals;

namespace qmltest
{
namespace
{

QMutex s_mutex;
QStringList s_warnings;
QtMessageHandler s_previous = nullptr;

void collect(QtMsgType type, const QMessageLogContext &context, const QString &message)
{
    const QMutexLocker locker(&s_mutex);
    // What Qt's platform plugins say depends on the machine. The one that tests use says, in no
    // category, that it does without most of what a desktop does.
    const QLatin1StringView category(context.category);
    const bool isOfPlatform = category.startsWith("qt.qpa."_L1) ||
                              category.startsWith("qt.accessibility."_L1) ||
                              message.startsWith("This plugin does not support "_L1);
    if ((type == QtWarningMsg || type == QtCriticalMsg) && !isOfPlatform)
        s_warnings.append(message);
    s_previous(type, context, message);
}

} // namespace

WarningsAreFailures::WarningsAreFailures()
{
    expected();
    m_previous = qInstallMessageHandler(collect);
    // One guard inside another must not have messages go round in circles.
    if (m_previous != collect)
        s_previous = m_previous;
}

WarningsAreFailures::~WarningsAreFailures()
{
    qInstallMessageHandler(m_previous);
    const QStringList warnings = expected();
    if (!warnings.isEmpty())
        QTest::qFail(qPrintable(u"Warnings:\n"_s + warnings.join(u'\n')), __FILE__, __LINE__);
}

QStringList WarningsAreFailures::expected()
{
    const QMutexLocker locker(&s_mutex);
    return std::exchange(s_warnings, {});
}

QList<QQuickItem *> findItems(QQuickItem *root)
{
    if (!root)
        return {};
    QList<QQuickItem *> found{root};
    const QList<QQuickItem *> children = root->childItems();
    for (QQuickItem *child : children)
        found += findItems(child);
    return found;
}

QList<QQuickItem *> findItems(QQuickItem *root, const QString &objectName)
{
    QList<QQuickItem *> found = findItems(root);
    found.removeIf([&](const QQuickItem *item) { return item->objectName() != objectName; });
    return found;
}

QQuickItem *findItem(QQuickItem *root, const QString &objectName)
{
    return findItems(root, objectName).value(0);
}

QPoint centre(const QQuickItem *item)
{
    return item->mapToScene(QPointF(item->width() / 2, item->height() / 2)).toPoint();
}

Window::Window(const QUrl &url, const QVariantMap &properties)
{
    engine()->addImportPath(u"qrc:/qt/qml"_s);
    showRoot(new QQmlComponent(engine(), url, this), properties);
}

Window::Window(const QByteArray &qml, const QSize &size, const QVariantMap &properties)
{
    engine()->addImportPath(u"qrc:/qt/qml"_s);
    setResizeMode(SizeRootObjectToView);
    resize(size);
    auto *component = new QQmlComponent(engine(), this);
    component->setData(qml, QUrl(u"qrc:/test.qml"_s));
    showRoot(component, properties);
}

Window::~Window() = default;

void Window::showRoot(QQmlComponent *component, const QVariantMap &properties)
{
    // With initial properties, Qt 6.4 crashes on a component that has errors.
    QObject *root =
        component->isReady() ? component->createWithInitialProperties(properties) : nullptr;
    if (!root) {
        QTest::qFail(qPrintable(component->errorString()), __FILE__, __LINE__);
        return;
    }
    setContent(component->url(), component, root);
    show();
    requestActivate();
    if (!QTest::qWaitForWindowActive(this, 30'000))
        QTest::qFail("the window does not become active", __FILE__, __LINE__);
}

QQuickItem *Window::item(const QString &objectName) const
{
    QQuickItem *item = findItem(contentItem(), objectName);
    if (!item)
        QTest::qFail(qPrintable(u"no item "_s + objectName), __FILE__, __LINE__);
    return item;
}

void Window::hover(const QPoint &point)
{
    QTest::mouseMove(this, point);
}

void Window::drawFrame()
{
    QSignalSpy frames(this, &QQuickWindow::frameSwapped);
    update();
    if (!frames.wait(30'000))
        QTest::qFail("the window draws no frame", __FILE__, __LINE__);
}

QImage Window::picture()
{
    QImage image = grabWindow();
    // The software renderer draws at the screen's ratio but does not write it down.
    image.setDevicePixelRatio(effectiveDevicePixelRatio());
    return image;
}

QColor Window::colorAt(const QPointF &point)
{
    const QImage image = picture();
    return image.pixelColor((point * image.devicePixelRatio()).toPoint());
}

} // namespace qmltest
