#include "app/windows/fixedsize.h"

#include <QQuickItem>
#include <QQuickWindow>

void limitSize(QWindow &window, const QSize &size)
{
    window.setMinimumSize({});
    window.setMaximumSize(size);
    window.setMinimumSize(size);
}

FixedSize::FixedSize(QObject *parent)
    : QObject(parent)
{
    connect(this, &FixedSize::sizeChanged, this, &FixedSize::apply);
}

void FixedSize::apply()
{
    // What a window holds is its content item's child.
    const auto *const content = qobject_cast<QQuickItem *>(parent());
    QQuickWindow *const window = content ? content->window() : nullptr;
    if (!window)
        return;
    // The limits are set first, as a window manager checks the new size against those it knows.
    const QSize whole = m_size.toSize();
    limitSize(*window, whole);
    window->resize(whole);
}
