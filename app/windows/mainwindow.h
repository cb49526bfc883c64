#pragma once

#include "views/day/contentviewmodel.h"

#include <QObject>
#include <QQuickWindow>
#include <QUrl>

#include <memory>

class QQmlEngine;

/// The main window while it is open. Closing it takes it and all its views away; opening it again
/// makes new ones. What outlives it is the timer manager's: the selected day and the billable
/// switch.
class MainWindow : public QObject
{
    Q_OBJECT

public:
    /// All collaborators outlive it.
    MainWindow(QQmlEngine &engine, TimerManager &timerManager, ModelContext &modelContext);
    ~MainWindow() override;

    /// The window's QML file.
    static QUrl source();

    /// Opens the window, or brings the open one forward; @p activationToken as for bringForward().
    void open(const QString &activationToken = {});

    bool isOpen() const { return m_window != nullptr; }
    /// Null while it is closed.
    QQuickWindow *window() const { return m_window.get(); }

Q_SIGNALS:
    void isOpenChanged();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QQmlEngine &m_engine;
    TimerManager &m_timerManager;
    ModelContext &m_modelContext;
    std::unique_ptr<ContentViewModel> m_viewModel;
    std::unique_ptr<QQuickWindow> m_window;
};
