#pragma once

#include <QQuickItem>
#include <QtQmlIntegration/qqmlintegration.h>

/// Takes the keyboard focus whenever no control in its parent has it: what had it has been removed,
/// hidden or disabled, and Qt leaves it to a focus scope, which does nothing with keys.
class FocusFallback : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

public:
    using QQuickItem::QQuickItem;

protected:
    void itemChange(ItemChange change, const ItemChangeData &data) override;

private:
    void follow();

    QMetaObject::Connection m_focusChange;
};
