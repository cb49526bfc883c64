#include "views/sidebar/calendarviewmodel.h"

#include <QLocale>

using namespace Qt::StringLiterals;

namespace
{

bool isSameMonth(QDate a, QDate b)
{
    return a.year() == b.year() && a.month() == b.month();
}

} // namespace

CalendarViewModel::CalendarViewModel(QObject *parent)
    : QObject(parent)
{
}

void CalendarViewModel::previousMonth()
{
    setDisplayedMonth(m_displayedMonth.addMonths(-1));
}

void CalendarViewModel::nextMonth()
{
    setDisplayedMonth(m_displayedMonth.addMonths(1));
}

void CalendarViewModel::setClock(Clock *clock)
{
    if (m_clock == clock)
        return;
    if (m_clock)
        m_clock->disconnect(this);
    m_clock = clock;
    if (clock)
        connect(clock, &Clock::calendarChanged, this, &CalendarViewModel::onCalendarChanged);
    Q_EMIT clockChanged();
    updateToday();
    follow();
}

void CalendarViewModel::setSelectedDate(Instant date)
{
    if (m_selectedDate == date)
        return;
    m_selectedDate = date;
    Q_EMIT selectedDateChanged();
    follow();
}

QString CalendarViewModel::title() const
{
    return QLocale(QLocale::Danish, QLocale::Denmark).toString(m_displayedMonth, u"MMMM yyyy"_s);
}

void CalendarViewModel::componentComplete()
{
    m_isComplete = true;
    // The month of now, should the selected date be beyond the calendar.
    if (m_clock)
        setDisplayedMonth(dayOf(m_clock->now()));
    follow();
}

QDate CalendarViewModel::dayOf(Instant instant) const
{
    return m_clock ? m_clock->calendar().dayOf(instant) : QDate();
}

void CalendarViewModel::follow()
{
    if (!m_isComplete)
        return;
    const QDate selectedDay = dayOf(m_selectedDate);
    m_daysInMonth.setSelectedDay(selectedDay);
    if (!isSameMonth(selectedDay, m_displayedMonth))
        setDisplayedMonth(selectedDay);
}

void CalendarViewModel::onCalendarChanged()
{
    updateToday();
    if (!m_isComplete)
        return;
    const QDate selectedDay = dayOf(m_selectedDate);
    // Paging away from the selected day's month is the user's doing, a new zone is not.
    const bool isSelectedDayShown = m_daysInMonth.selectedIndex() >= 0;
    m_daysInMonth.setSelectedDay(selectedDay);
    setDisplayedMonth(isSelectedDayShown && selectedDay.isValid() ? selectedDay : m_displayedMonth);
}

void CalendarViewModel::updateToday()
{
    m_daysInMonth.setToday(m_clock ? dayOf(m_clock->now()) : QDate());
}

void CalendarViewModel::setDisplayedMonth(QDate month)
{
    if (!month.isValid() || !m_clock)
        return;
    m_displayedMonth = month;
    m_daysInMonth.setMonth(month, m_clock->calendar());
    Q_EMIT titleChanged();
}
