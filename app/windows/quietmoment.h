#pragma once

#include <QObject>
#include <QTimer>

#include <chrono>

/// Waits for a moment at which the keyboard can be taken from the program's windows without
/// disturbing anybody: one of them has it and edits no text, and nothing has been pressed for a
/// while.
class QuietMoment : public QObject
{
    Q_OBJECT

public:
    /// Nothing may have been pressed for @p quiet. Needs the application.
    explicit QuietMoment(std::chrono::milliseconds quiet);

    /// Waits for the next such moment; the time counts from now on.
    void await();
    /// Waits no longer.
    void stop();

Q_SIGNALS:
    /// The moment has come. Emitted once for each `await()`.
    void came();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void beginAnew();
    void check();

    bool m_isAwaiting = false;
    QTimer m_timer;
};
