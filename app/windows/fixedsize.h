#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QSize>
#include <QtQml/qqmlregistration.h>

/// Gives the window that it is declared in a size that only itself changes; tiling window managers
/// let such a window float.
class FixedSize : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(QSizeF size READ size WRITE setSize NOTIFY sizeChanged REQUIRED)

public:
    using QObject::QObject;

    QSizeF size() const { return m_size; }
    void setSize(const QSizeF &size);

    void classBegin() override {}
    void componentComplete() override { apply(); }

Q_SIGNALS:
    void sizeChanged();

private:
    void apply();

    QSizeF m_size;
};
