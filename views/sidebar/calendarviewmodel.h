#pragma once

#include "model/clock.h"
#include "views/sidebar/monthmodel.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

/// The month that the calendar shows. It follows the selected date and can be paged; paging never
/// changes the selected date.
class CalendarViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the main window's content")
    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(MonthModel *daysInMonth READ daysInMonth CONSTANT)

public:
    /// @p clock outlives it; @p selectedDate is a moment of the selected day.
    CalendarViewModel(const Clock &clock, Instant selectedDate);

    Q_INVOKABLE void previousMonth();
    Q_INVOKABLE void nextMonth();

    /// Follows to another selected day.
    void setSelectedDate(Instant date);
    /// The month: "november 2026".
    QString title() const;
    MonthModel *daysInMonth() { return &m_daysInMonth; }

Q_SIGNALS:
    void titleChanged();
    /// The user has picked the day that @p date begins.
    void dateSelected(double date);

private:
    QDate dayOf(Instant instant) const;
    void follow();
    void onCalendarChanged();
    void updateToday();
    void setDisplayedMonth(QDate month);

    const Clock &m_clock;
    Instant m_selectedDate;
    /// Any day of the month that is shown.
    QDate m_displayedMonth;
    MonthModel m_daysInMonth;
};
