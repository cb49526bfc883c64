#pragma once

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

/// Knows whether the pointer or the keyboard was used last in the program. What appears under a
/// resting pointer or scrolls there is hovered, too, but nobody has pointed at it.
class LastInput : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    /// Whether it was the pointer. Set it to what was before this object.
    Q_PROPERTY(bool isPointer READ isPointer WRITE setIsPointer NOTIFY isPointerChanged)

public:
    explicit LastInput(QObject *parent = nullptr);

    bool isPointer() const { return m_isPointer; }
    void setIsPointer(bool isPointer);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void isPointerChanged();

private:
    bool m_isPointer = false;
};
