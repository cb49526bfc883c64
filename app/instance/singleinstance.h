#pragma once

#include "app/instance/applicationobject.h"
#include "app/instance/starttokens.h"
#include "app/instance/tasksinterface.h"

#include <QDBusConnection>
#include <QDeadlineTimer>

#include <chrono>

/// Sees to it that the program runs once in each session: the first process holds a name on the
/// session bus, and a later one has it bring its window forward and ends. Without a bus every
/// process is the first, and the store lets in one of them.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Claim {
        First,      ///< This process is to run.
        HandedOver, ///< Another one runs and has brought its window forward.
        Unanswered, ///< Another one runs and does not answer.
    };

    /// @p bus may be unconnected. @p service is the name on it, from which the object's path
    /// follows.
    SingleInstance(const QDBusConnection &bus, const QString &service);

    /// Becomes the first, for as long as the process lives, or hands over to it. Waits no longer
    /// than @p patience for one that is there: it may be starting or ending. What arrives from then
    /// on is announced once the event loop runs.
    Claim claim(const StartTokens &tokens,
                std::chrono::milliseconds patience = std::chrono::seconds(10));

    /// What other programs can ask about the recorded time, once it is told of a store. Until the
    /// event loop runs, they wait.
    TasksInterface &tasks() { return *m_tasks; }

Q_SIGNALS:
    /// The window is to come forward. @p activationToken is what the desktop gave to who asked for
    /// it, or empty.
    void activated(const QString &activationToken);
    void quitRequested();

private:
    bool isNameAnothers(QDeadlineTimer deadline);
    bool handOver(const StartTokens &tokens, QDeadlineTimer deadline);

    QDBusConnection m_bus;
    QString m_service;
    QString m_objectPath;
    ApplicationObject m_object;
    /// Part of the object.
    TasksInterface *m_tasks;
};
