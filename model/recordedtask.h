#pragma once

#include <QDate>
#include <QString>

#include <functional>
#include <optional>

/// A task as the month's hours need it.
struct RecordedTask {
    QDate day;
    /// Nothing for a task without one; an empty text is a code, too.
    std::optional<QString> projectCode;
    QString name;
    /// What is recorded of it; of a running task, up to a moment that is one for all tasks.
    qint64 seconds = 0;

    bool operator==(const RecordedTask &) const = default;
};

/// Takes the tasks of a period, one after the other: day after day, and those of a day in the
/// store's order, in which the window adds them up.
using TaskReceiver = std::function<void(const RecordedTask &)>;
