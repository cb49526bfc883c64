#include "views/controls/focusfallback.h"

#include <QQuickWindow>

void FocusFallback::itemChange(ItemChange change, const ItemChangeData &data)
{
    if (change == ItemSceneChange) {
        disconnect(m_focusChange);
        // The connection is queued: while a popup or a form closes, the focus is nowhere for a
        // moment.
        if (data.window)
            m_focusChange = connect(data.window, &QQuickWindow::activeFocusItemChanged, this,
                                    &FocusFallback::follow, Qt::QueuedConnection);
    }
    QQuickItem::itemChange(change, data);
}

void FocusFallback::follow()
{
    const QQuickItem *const focus = window() ? window()->activeFocusItem() : nullptr;
    if (!focus || !parentItem())
        return;
    const bool isMine = focus->isAncestorOf(this) || parentItem()->isAncestorOf(focus);
    if (isMine && (focus->isFocusScope() || !focus->isVisible()))
        forceActiveFocus();
}
