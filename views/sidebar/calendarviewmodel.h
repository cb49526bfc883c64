#pragma once

#include "model/clock.h"
#include "views/sidebar/monthmodel.h"

#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQmlIntegration>

/// The month that the calendar shows. It follows the selected date and can be paged; paging never
/// changes the selected date.
class CalendarViewModel : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(Clock *clock READ clock WRITE setClock NOTIFY clockChanged REQUIRED)
    Q_PROPERTY(double selectedDate READ selectedDate WRITE setSelectedDate NOTIFY
                   selectedDateChanged REQUIRED)

    Q_PROPERTY(QString title READ title NOTIFY titleChanged)
    Q_PROPERTY(MonthModel *daysInMonth READ daysInMonth CONSTANT)

public:
    explicit CalendarViewModel(QObject *parent = nullptr);

    Q_INVOKABLE void previousMonth();
    Q_INVOKABLE void nextMonth();

    Clock *clock() const { return m_clock; }
    void setClock(Clock *clock);
    /// A moment of the selected day.
    Instant selectedDate() const { return m_selectedDate; }
    void setSelectedDate(Instant date);
    /// The month: "november 2026".
    QString title() const;
    MonthModel *daysInMonth() { return &m_daysInMonth; }

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void clockChanged();
    void selectedDateChanged();
    void titleChanged();

private:
    QDate dayOf(Instant instant) const;
    void follow();
    void onCalendarChanged();
    void updateToday();
    void setDisplayedMonth(QDate month);

    QPointer<Clock> m_clock;
    Instant m_selectedDate = 0;
    /// Any day of the month that is shown.
    QDate m_displayedMonth;
    MonthModel m_daysInMonth;
    bool m_isComplete = false;
};
