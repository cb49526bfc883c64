#include "views/day/contentkeys.h"

#include <QKeyEvent>
#include <QQuickWindow>

namespace
{

/// Whether @p event is a lower-case t. Under Ctrl the text is a control character, and Qt's key
/// does not tell t from T: the platform's own symbol does, where there is one.
bool isLowerCaseT(const QKeyEvent &event)
{
    if (event.nativeVirtualKey() != 0)
        return event.nativeVirtualKey() == 't';
    return event.text() == QLatin1Char('t');
}

/// Whether @p event is meant for the desktop: with Alt, Space opens a window's menu, and with Meta
/// it changes the language that is typed. Not every window manager keeps these for itself.
bool isDesktopKey(const QKeyEvent &event)
{
    return event.key() == Qt::Key_Space &&
           (event.modifiers() & (Qt::AltModifier | Qt::MetaModifier));
}

} // namespace

ContentKeys::ContentKeys(QObject *parent)
    : QObject(parent)
{
    connect(this, &ContentKeys::viewModelChanged, this, &ContentKeys::begin);
}

bool ContentKeys::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto &press = *static_cast<QKeyEvent *>(event);
        if (!isDesktopKey(press) && !belongsToFocus(press) &&
            m_viewModel->handleKey({static_cast<Qt::Key>(press.key()),
                                    press.modifiers().testFlag(Qt::ControlModifier),
                                    isLowerCaseT(press), press.isAutoRepeat()})) {
            event->accept();
            return true;
        }
    }
    return QObject::eventFilter(watched, event);
}

void ContentKeys::begin()
{
    m_content = qobject_cast<QQuickItem *>(parent());
    connect(m_content, &QQuickItem::windowChanged, this, &ContentKeys::watch);
    watch(m_content->window());
}

void ContentKeys::watch(QQuickWindow *window)
{
    if (m_window)
        m_window->removeEventFilter(this);
    m_window = window;
    if (window)
        window->installEventFilter(this);
}

bool ContentKeys::belongsToFocus(const QKeyEvent &event) const
{
    const QQuickItem *const focus = m_window->activeFocusItem();
    // Nothing in particular has the focus, so the keys belong to the day.
    if (!focus || focus == m_content || focus->isAncestorOf(m_content))
        return false;
    if (!m_content->isAncestorOf(focus))
        return true;
    // A text field gives up the shortcuts that mean nothing in it. Ctrl+Left goes back a word.
    if (focus->inherits("QQuickTextInput"))
        return !event.modifiers().testFlag(Qt::ControlModifier) ||
               !(isLowerCaseT(event) || event.key() == Qt::Key_Return ||
                 event.key() == Qt::Key_Enter);
    // Space is the only key that a control reached by Tab takes.
    return focus->activeFocusOnTab() && event.key() == Qt::Key_Space;
}
