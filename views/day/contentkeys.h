#pragma once

#include "views/day/contentviewmodel.h"

#include <QPointer>
#include <QQuickItem>

class QKeyEvent;
class QQuickWindow;

/// Declared in the day view, brings the window's key presses to it before anything else in the
/// window sees them, but for those that belong to where the keyboard focus is.
class ContentKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ContentViewModel *viewModel MEMBER m_viewModel NOTIFY viewModelChanged REQUIRED)

public:
    explicit ContentKeys(QObject *parent = nullptr);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void viewModelChanged();

private:
    void begin();
    void watch(QQuickWindow *window);
    bool belongsToFocus(const QKeyEvent &event) const;

    ContentViewModel *m_viewModel = nullptr;
    /// The day view's item. A focus outside of it, in a menu or an alert, keeps all keys.
    QQuickItem *m_content = nullptr;
    QPointer<QQuickWindow> m_window;
};
