#pragma once

#include "app/instance/applicationobject.h"
#include "app/instance/instancesocket.h"
#include "app/instance/userlock.h"

#include <QDBusConnection>

#include <chrono>

/// Sees to it that the program runs once for each user. The first process holds a name on the
/// session bus and a lock in the user's runtime folder, each where it is there, so that it is found
/// by one that has only one of the two. A later process hands over to the first and ends.
class SingleInstance : public QObject
{
    Q_OBJECT

public:
    enum class Claim {
        First,      ///< This process is to run.
        HandedOver, ///< Another one runs and has brought its window forward.
        Unanswered, ///< Another one runs and does not answer.
    };

    /// @p bus may be unconnected and @p folder empty; without both every process is the first.
    /// @p service is the name on the bus, from which the object's path and the files' names follow.
    SingleInstance(const QDBusConnection &bus, const QString &folder, const QString &service);

    /// Becomes the first, for as long as this object lives, or hands over to it. Waits no longer
    /// than @p patience for one that is there: it may be starting or ending. What arrives from then
    /// on is announced once the event loop runs.
    Claim claim(const StartTokens &tokens,
                std::chrono::milliseconds patience = std::chrono::seconds(10));

Q_SIGNALS:
    /// The window is to come forward. @p activationToken is what the desktop gave to who asked for
    /// it, or empty.
    void activated(const QString &activationToken);
    void quitRequested();

private:
    enum class Attempt { Succeeded, HandedOver, Failed };

    Attempt claimBus(const StartTokens &tokens, QDeadlineTimer deadline);
    Attempt claimFolder(const StartTokens &tokens, QDeadlineTimer deadline);

    QDBusConnection m_bus;
    QString m_folder;
    QString m_service;
    QString m_objectPath;
    ApplicationObject m_object;
    // The socket goes before the lock.
    UserLock m_lock;
    InstanceSocket m_socket;
};
