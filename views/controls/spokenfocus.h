#pragma once

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

/// Tells assistive technology that the item that it is declared in is what the keys act upon, for
/// example a selected row, while another item, which knows what they do, has the keyboard focus.
/// The item sets `Accessible.focused` to the same.
class SpokenFocus : public QObject
{
    Q_OBJECT
    QML_ELEMENT

    /// Whether the keys act upon the item.
    Q_PROPERTY(bool isHere READ isHere WRITE setIsHere NOTIFY isHereChanged)

public:
    using QObject::QObject;

    bool isHere() const { return m_isHere; }
    void setIsHere(bool isHere);

Q_SIGNALS:
    void isHereChanged();

private:
    bool m_isHere = false;
};
