#include "views/sidebar/monthmodel.h"

#include "views/sidebar/monthgrid.h"

#include <QLocale>

#include <algorithm>

using namespace Qt::StringLiterals;

void MonthModel::setMonth(QDate month, const Calendar &calendar)
{
    auto grid = monthGrid(month, calendar);
    const int countBefore = count();
    const int newCount = static_cast<int>(grid.size());
    m_calendar = calendar;
    if (newCount > countBefore) {
        beginInsertRows({}, countBefore, newCount - 1);
        m_grid = std::move(grid);
        endInsertRows();
    } else if (newCount < countBefore) {
        beginRemoveRows({}, newCount, countBefore - 1);
        m_grid = std::move(grid);
        endRemoveRows();
    } else {
        m_grid = std::move(grid);
    }
    announce(std::min(countBefore, newCount), {});
    Q_EMIT selectedIndexChanged();
}

void MonthModel::setSelectedDay(QDate day)
{
    if (m_selectedDay == day)
        return;
    m_selectedDay = day;
    announce(count(), {IsSelectedRole});
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
        return QLocale(QLocale::Danish, QLocale::Denmark).toString(day, u"dddd d. MMMM yyyy"_s);
    case IsSelectedRole:
        return day.isValid() && day == m_selectedDay;
    case IsTodayRole:
        return day.isValid() && day == m_today;
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
            {IsTodayRole, QByteArrayLiteral("isToday")}};
}

void MonthModel::announce(int count, const QList<int> &roles)
{
    if (count > 0)
        Q_EMIT dataChanged(index(0), index(count - 1), roles);
}
