#include "views/sidebar/calendarviewmodel.h"

#include "views/controls/danishdate.h"

namespace
{

bool isSameMonth(QDate a, QDate b)
{
    return a.year() == b.year() && a.month() == b.month();
}

} // namespace

CalendarViewModel::CalendarViewModel(const Clock &clock, Instant selectedDate)
    : m_clock(clock)
    , m_selectedDate(selectedDate)
{
    connect(&clock, &Clock::calendarChanged, this, &CalendarViewModel::onCalendarChanged);
    updateToday();
    // If the selected date is beyond the calendar, the current month is shown.
    setDisplayedMonth(dayOf(clock.now()));
    follow();
}

void CalendarViewModel::previousMonth()
{
    setDisplayedMonth(m_displayedMonth.addMonths(-1));
}

void CalendarViewModel::nextMonth()
{
    setDisplayedMonth(m_displayedMonth.addMonths(1));
}

void CalendarViewModel::setSelectedDate(Instant date)
{
    if (m_selectedDate == date)
        return;
    m_selectedDate = date;
    follow();
}

QString CalendarViewModel::title() const
{
    return danishMonth(m_displayedMonth);
}

QDate CalendarViewModel::dayOf(Instant instant) const
{
    return m_clock.calendar().dayOf(instant);
}

void CalendarViewModel::follow()
{
    const QDate selectedDay = dayOf(m_selectedDate);
    m_daysInMonth.setSelectedDay(selectedDay);
    if (!isSameMonth(selectedDay, m_displayedMonth))
        setDisplayedMonth(selectedDay);
}

void CalendarViewModel::onCalendarChanged()
{
    updateToday();
    const QDate selectedDay = dayOf(m_selectedDate);
    // The user may have paged away from the selected day's month, but a new zone must not do so.
    const bool isSelectedDayShown = m_daysInMonth.selectedIndex() >= 0;
    m_daysInMonth.setSelectedDay(selectedDay);
    setDisplayedMonth(isSelectedDayShown && selectedDay.isValid() ? selectedDay : m_displayedMonth);
}

void CalendarViewModel::updateToday()
{
    m_daysInMonth.setToday(dayOf(m_clock.now()));
}

void CalendarViewModel::setDisplayedMonth(QDate month)
{
    if (!month.isValid())
        return;
    m_displayedMonth = month;
    m_daysInMonth.setMonth(month, m_clock.calendar());
    Q_EMIT titleChanged();
}
