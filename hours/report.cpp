#include "hours/report.h"

#include "model/arithmetic.h"
#include "model/durations.h"

#include <QCollator>
#include <QHash>
#include <QLocale>

#include <algorithm>
#include <compare>
#include <string>
#include <utility>

namespace
{

quint64 magnitude(qint64 seconds)
{
    const auto bits = static_cast<quint64>(seconds);
    return seconds < 0 ? 0 - bits : bits;
}

std::string adviceOn(const RecordedTask &largest)
{
    return "The most time is that of the task \"" + largest.name.left(60).toStdString() + "\" of " +
           largest.day.toString(Qt::ISODate).toStdString() + ": " +
           std::to_string(largest.seconds) + " seconds.";
}

/// Texts in the order of a Danish dictionary; only identical ones are equal.
class TextOrder
{
public:
    int compared(const QString &a, const QString &b) const
    {
        if (a == b)
            return 0;
        const int order = m_collator.compare(a, b);
        return order != 0 ? order : a.compare(b);
    }

private:
    QCollator m_collator{QLocale(QLocale::Danish, QLocale::Denmark)};
};

/// -1, 0 or 1 by whether the thing is missing; such come last.
int missingCompared(bool isMissingInA, bool isMissingInB)
{
    return static_cast<int>(isMissingInA) - static_cast<int>(isMissingInB);
}

int compared(const RowKey &a, const RowKey &b, Key key, const TextOrder &texts)
{
    switch (key) {
    case Key::Day:
        return a.day == b.day ? 0 : (a.day < b.day ? -1 : 1);
    case Key::ProjectCode:
        if (a.projectCode && b.projectCode)
            return texts.compared(*a.projectCode, *b.projectCode);
        return missingCompared(!a.projectCode, !b.projectCode);
    case Key::Task:
        break;
    }
    if (!a.name.isEmpty() && !b.name.isEmpty())
        return texts.compared(a.name, b.name);
    return missingCompared(a.name.isEmpty(), b.name.isEmpty());
}

} // namespace

Report::Report(QList<Key> keys)
    : m_keys(std::move(keys))
    , m_hasDay(m_keys.contains(Key::Day))
    , m_hasCode(m_keys.contains(Key::ProjectCode))
    , m_hasName(m_keys.contains(Key::Task))
{
}

void Report::add(const RecordedTask &task)
{
    if (magnitude(task.seconds) > magnitude(m_largest.seconds))
        m_largest = task;
    const double hours = decimalHours(task.seconds);
    const double billableHours = roundedDecimalHours(task.seconds);
    const auto addTo = [&](Sums &sums) {
        sums.seconds =
            checkedSum(sums.seconds, task.seconds, [this] { return adviceOn(m_largest); });
        sums.hours += hours;
        sums.billableHours += billableHours;
    };
    addTo(m_total);
    RowKey key;
    if (m_hasDay)
        key.day = task.day;
    if (m_hasCode)
        key.projectCode = task.projectCode;
    if (m_hasName)
        key.name = task.name;
    addTo(m_rows[std::move(key)]);
}

std::vector<const Report::Row *> Report::rows() const
{
    std::vector<const Row *> rows;
    rows.reserve(m_rows.size());
    for (const Row &row : m_rows)
        rows.push_back(&row);
    const TextOrder texts;
    std::sort(rows.begin(), rows.end(), [&](const Row *a, const Row *b) {
        for (const Key key : m_keys) {
            if (const int order = compared(a->first, b->first, key, texts))
                return order < 0;
        }
        return false;
    });
    return rows;
}

std::size_t Report::Hash::operator()(const RowKey &key) const
{
    // An empty text is a code, too, and another one than none.
    return qHashMulti(0, key.day.toJulianDay(), key.projectCode.has_value(),
                      key.projectCode.value_or(QString()), key.name);
}
