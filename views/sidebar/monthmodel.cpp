#include "views/sidebar/monthmodel.h"

#include "views/sidebar/monthgrid.h"

#include <QLocale>

using namespace Qt::StringLiterals;

void MonthModel::setMonth(QDate month, const Calendar &calendar)
{
    auto grid = monthGrid(month, calendar);
    m_calendar = calendar;
    resize(static_cast<int>(grid.size()));
    m_grid = std::move(grid);
    announce({});
}

void MonthModel::setSelectedDay(QDate day)
{
    if (m_selectedDay == day)
        return;
    m_selectedDay = day;
    announce({IsSelectedRole});
}

void MonthModel::setToday(QDate day)
{
    if (m_today == day)
        return;
    m_today = day;
    announce({IsTodayRole});
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

void MonthModel::resize(int newCount)
{
    const auto size = static_cast<std::size_t>(newCount);
    if (newCount > count()) {
        beginInsertRows({}, count(), newCount - 1);
        m_grid.resize(size);
        endInsertRows();
    } else if (newCount < count()) {
        beginRemoveRows({}, newCount, count() - 1);
        m_grid.resize(size);
        endRemoveRows();
    }
}

void MonthModel::announce(const QList<int> &roles)
{
    if (!m_grid.empty())
        Q_EMIT dataChanged(index(0), index(count() - 1), roles);
}
