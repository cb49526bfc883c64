#pragma once

#include "views/day/contentviewmodel.h"

#include <QPointer>
#include <QQuickItem>

class QKeyEvent;
class QQuickWindow;

/// Brings the window's key presses to the day view before anything else in the window sees them,
/// but for those that belong to where the keyboard focus is.
class ContentKeys : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickItem *content READ content WRITE setContent NOTIFY contentChanged REQUIRED)
    Q_PROPERTY(ContentViewModel *viewModel READ viewModel WRITE setViewModel NOTIFY viewModelChanged
                   REQUIRED)

public:
    explicit ContentKeys(QObject *parent = nullptr);

    /// The day view's item. A focus outside of it, in a menu or an alert, keeps all keys.
    QQuickItem *content() const { return m_content; }
    void setContent(QQuickItem *content);
    ContentViewModel *viewModel() const { return m_viewModel; }
    void setViewModel(ContentViewModel *viewModel);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void contentChanged();
    void viewModelChanged();

private:
    void watch(QQuickWindow *window);
    bool belongsToFocus(const QKeyEvent &event) const;

    QPointer<QQuickItem> m_content;
    QPointer<ContentViewModel> m_viewModel;
    QPointer<QQuickWindow> m_window;
};
