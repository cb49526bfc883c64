#pragma once

#include "hours/options.h"
#include "hours/recordedtask.h"

#include <unordered_map>
#include <vector>

/// Recorded time of some tasks, added up as the window's footer does it.
struct Sums {
    qint64 seconds = 0;
    double hours = 0;
    /// Each task is rounded by itself.
    double billableHours = 0;
};

/// What a line of the report is for: of the three, those that the report has as keys.
struct RowKey {
    QDate day;
    std::optional<QString> projectCode;
    QString name;

    bool operator==(const RowKey &) const = default;
};

/// The hours of a period by some keys. Keeps sums alone, and no tasks.
class Report
{
public:
    using Row = std::pair<const RowKey, Sums>;

    explicit Report(QList<Key> keys);

    /// Adds a task. Fatal if the sum of the seconds overflows.
    void add(const RecordedTask &task);

    const QList<Key> &keys() const { return m_keys; }
    /// The lines by the keys, in order: days ascending, texts as in a Danish dictionary; tasks
    /// without project code, and those without name, come last. Owned by the report, until the next
    /// task is added.
    std::vector<const Row *> rows() const;
    const Sums &total() const { return m_total; }

private:
    struct Hash {
        std::size_t operator()(const RowKey &key) const;
    };

    QList<Key> m_keys;
    bool m_hasDay;
    bool m_hasCode;
    bool m_hasName;
    std::unordered_map<RowKey, Sums, Hash> m_rows;
    Sums m_total;
    /// The task with the most time: if the sum does not fit, that is the one to look at.
    RecordedTask m_largest;
};
