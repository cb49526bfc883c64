#pragma once

#include "hours/period.h"
#include "hours/recordedtask.h"

#include <QDBusConnection>

#include <chrono>
#include <filesystem>
#include <optional>

/// The TULO Time Tracker that holds a store, asked over the session bus for what it has recorded.
/// None is started, and no other process is asked, whatever names it has on the bus.
class RunningProgram
{
public:
    /// The one that holds the store at @p path. Waits for each of its answers for @p patience at
    /// most.
    explicit RunningProgram(const std::filesystem::path &path,
                            std::chrono::milliseconds patience = std::chrono::seconds(30));

    /// Hands the tasks of @p period to @p receive. False, with nothing delivered, if no program
    /// holds the store that can be asked for it, or if it ends meanwhile. Throws TasksChanged if it
    /// ends, or its tasks change, when something has been delivered, and StoreError with what the
    /// program says, if it is of an older version, or if it does not answer.
    bool deliver(const Period &period, const TaskReceiver &receive);

private:
    /// The program has ended.
    struct Gone {
    };

    std::optional<QString> owner() const;
    void deliverFrom(const QString &program, const Period &period, const TaskReceiver &receive);
    qulonglong changesOf(const QString &program) const;
    QDBusMessage answerTo(const QDBusMessage &question) const;

    std::filesystem::path m_path;
    std::chrono::milliseconds m_patience;
    bool m_hasDelivered = false;
    /// How often the program's tasks had changed, once they are asked for in parts.
    std::optional<qulonglong> m_changes;
};
