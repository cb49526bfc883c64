#pragma once

#include "model/calendar.h"

#include <QAbstractListModel>
#include <QDate>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>
#include <vector>

/// The places of a month's grid, in reading order. A place keeps its delegate when the month
/// changes.
class MonthModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the calendar")
    /// The selected day's place, or -1 where the month is another's.
    Q_PROPERTY(int selectedIndex READ selectedIndex NOTIFY selectedIndexChanged)

public:
    enum Role {
        DayRole = Qt::UserRole + 1, ///< "day": the day of the month, or 0 in an empty place.
        DateRole,                   ///< "date": the day's first moment.
        NameRole,                   ///< "name": the date in full, "mandag 3. marts 2025".
        IsSelectedRole,             ///< "isSelected"
        IsTodayRole,                ///< "isToday"
        IsTabStopRole, ///< "isTabStop": the selected day, or else the first of the month.
    };

    using QAbstractListModel::QAbstractListModel;

    /// Shows the month that @p month lies in, as @p calendar has it.
    void setMonth(QDate month, const Calendar &calendar);
    /// The day to be marked as selected; an invalid date for none.
    void setSelectedDay(QDate day);
    /// The day to be marked as today.
    void setToday(QDate day);

    int selectedIndex() const;

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void selectedIndexChanged();

private:
    int count() const { return static_cast<int>(m_grid.size()); }
    /// Tells that the first @p count places differ in @p roles.
    void announce(int count, const QList<int> &roles);

    Calendar m_calendar;
    std::vector<std::optional<QDate>> m_grid;
    QDate m_selectedDay;
    QDate m_today;
    int m_tabStop = 0;
};
