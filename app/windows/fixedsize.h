#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QSize>
#include <QtQmlIntegration/qqmlintegration.h>

class QWindow;

/// Lets @p window have no size but @p size from now on; it does not get that size by this.
void limitSize(QWindow &window, const QSize &size);

/// Gives the window that it is declared in a size that only itself changes; tiling window managers
/// let such a window float.
class FixedSize : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(QSizeF size MEMBER m_size NOTIFY sizeChanged REQUIRED)

public:
    explicit FixedSize(QObject *parent = nullptr);

    void classBegin() override {}
    void componentComplete() override { apply(); }

Q_SIGNALS:
    void sizeChanged();

private:
    void apply();

    QSizeF m_size;
};
