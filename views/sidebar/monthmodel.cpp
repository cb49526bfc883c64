#include "views/sidebar/monthmodel.h"

#include "views/controls/danishdate.h"
#include "views/sidebar/monthgrid.h"

#include <algorithm>

namespace
{

int tabStopOf(const std::vector<std::optional<QDate>> &grid, QDate selectedDay)
{
    auto place = std::find(grid.begin(), grid.end(), selectedDay);
    if (place == grid.end())
        place = std::find_if(grid.begin(), grid.end(), [](const auto &day) { return bool(day); });
    return static_cast<int>(place - grid.begin());
}

} // namespace

void MonthModel::setMonth(QDate month, const Calendar &calendar)
{
    auto grid = monthGrid(month, calendar);
    const int countBefore = count();
    const int newCount = static_cast<int>(grid.size());
    const int kept = std::min(countBefore, newCount);
    m_calendar = calendar;
    m_tabStop = tabStopOf(grid, m_selectedDay);
    // First the places that stay: the focus leaves one that goes before it does, and is nowhere
    // when the one that it goes to comes.
    std::copy_n(grid.cbegin(), kept, m_grid.begin());
    announce(kept, {});
    if (newCount > countBefore) {
        beginInsertRows({}, countBefore, newCount - 1);
        m_grid = std::move(grid);
        endInsertRows();
    } else if (newCount < countBefore) {
        beginRemoveRows({}, newCount, countBefore - 1);
        m_grid = std::move(grid);
        endRemoveRows();
    }
    Q_EMIT selectedIndexChanged();
}

void MonthModel::setSelectedDay(QDate day)
{
    if (m_selectedDay == day)
        return;
    m_selectedDay = day;
    m_tabStop = tabStopOf(m_grid, day);
    announce(count(), {IsSelectedRole, IsTabStopRole});
    Q_EMIT selectedIndexChanged();
}

void MonthModel::setToday(QDate day)
{
    if (m_today == day)
        return;
    m_today = day;
    announce(count(), {IsTodayRole});
}

int MonthModel::selectedIndex() const
{
    const auto place = std::find(m_grid.begin(), m_grid.end(), m_selectedDay);
    return place == m_grid.end() ? -1 : static_cast<int>(place - m_grid.begin());
}

int MonthModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant MonthModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    const QDate day = m_grid[static_cast<std::size_t>(index.row())].value_or(QDate());
    switch (role) {
    case DayRole:
        return day.day();
    case DateRole:
        return m_calendar.startOfDay(day).value_or(0);
    case NameRole:
        return danishDay(day);
    case IsSelectedRole:
        return day.isValid() && day == m_selectedDay;
    case IsTodayRole:
        return day.isValid() && day == m_today;
    case IsTabStopRole:
        return index.row() == m_tabStop;
    default:
        return {};
    }
}

QHash<int, QByteArray> MonthModel::roleNames() const
{
    return {{DayRole, QByteArrayLiteral("day")},
            {DateRole, QByteArrayLiteral("date")},
            {NameRole, QByteArrayLiteral("name")},
            {IsSelectedRole, QByteArrayLiteral("isSelected")},
            {IsTodayRole, QByteArrayLiteral("isToday")},
            {IsTabStopRole, QByteArrayLiteral("isTabStop")}};
}

void MonthModel::announce(int count, const QList<int> &roles)
{
    if (count > 0)
        Q_EMIT dataChanged(index(0), index(count - 1), roles);
}
