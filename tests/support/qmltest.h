#pragma once

#include <QPointF>
#include <QQuickView>
#include <QString>
#include <QStringList>
#include <QVariantMap>

/// What the tests of views have in common.
namespace qmltest
{

/// Makes a test fail that lets any warning of QML or of the views through. Lives as long as the
/// test's data; `expected()` takes the warnings that a test provoked out again.
class WarningsAreFailures
{
public:
    WarningsAreFailures();
    ~WarningsAreFailures();
    Q_DISABLE_COPY_MOVE(WarningsAreFailures)

    /// The warnings since the last call, which then count no longer as failures.
    QStringList expected();

private:
    QtMessageHandler m_previous;
};

/// The item of that `objectName` at or below `root`, in the tree of what is seen, so that
/// delegates are found too; null if there is none.
QQuickItem *findItem(QQuickItem *root, const QString &objectName);

/// All items of that `objectName` at or below `root`, in the order of the tree.
QList<QQuickItem *> findItems(QQuickItem *root, const QString &objectName);

/// All items at or below `root`, in the order of the tree.
QList<QQuickItem *> findItems(QQuickItem *root);

/// The middle of `item` in its window's coordinates.
QPoint centre(const QQuickItem *item);

/// A window that shows one component.
class Window : public QQuickView
{
public:
    /// Shows the QML file at `url` with `properties` for its root, and waits until it is drawn.
    /// The window takes the root's size. Fails the test if it cannot be loaded.
    explicit Window(const QUrl &url, const QVariantMap &properties = {});

    /// Shows a component given by its text, in a window of `size`.
    explicit Window(const QByteArray &qml, const QSize &size = {200, 120},
                    const QVariantMap &properties = {});
    ~Window() override;

    /// The item of that `objectName`; fails the test if there is none.
    QQuickItem *item(const QString &objectName) const;

    /// Moves the pointer to `point`, without a button.
    void hover(const QPoint &point);

    /// Draws a frame, before which the window lets a resting pointer hover what has come under it.
    void drawFrame();

    /// What the window shows, in physical pixels.
    QImage picture();

    /// Colour shown at a logical point.
    QColor colorAt(const QPointF &point);

private:
    void showRoot(QQmlComponent *component, const QVariantMap &properties);
};

} // namespace qmltest
