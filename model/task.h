#pragma once

#include "model/arithmetic.h"
#include "model/record.h"

#include <string>

/// One named piece of work on one day, with the time recorded for it. It runs exactly while
/// lastStartTime() is set; every figure is derived from that, the banked seconds and the clock.
class Task : public Record
{
    Q_OBJECT

public:
    static constexpr RecordType type = RecordType::Task;

    struct Values : Record::Values {
        QString name;
        Instant date = 0;
        qint64 accumulatedSeconds = 0;
        std::optional<Instant> lastStartTime;
        std::optional<QString> projectCode;
    };

    /// What is recorded in @p values at @p now. Smaller than the banked seconds after the clock was
    /// set back. Fatal on overflow, with @p advice.
    static qint64 totalSeconds(const Values &values, Instant now, const FatalAdvice &advice);
    /// Why totalSeconds() would be fatal: its message without the advice; null if it would not.
    static const char *faultOfTotal(const Values &values, Instant now);
    /// For the message of a fatal error about the time in @p values: which task of which day it is,
    /// what is stored of its time, and, where @p storePath is not empty, how to set it to zero in
    /// that store. In English.
    static std::string repairAdvice(const Values &values, const Calendar &calendar,
                                    const QString &storePath);

    /// A new task, not yet stored. @p date is any moment of its day. The clock outlives the task.
    Task(const Clock &clock, const QString &name, Instant date, std::optional<QString> projectCode,
         qint64 sortOrder = 0);
    /// A task as the store holds it.
    Task(const Clock &clock, const Values &values);

    const QString &name() const { return m_values.name; }
    void setName(const QString &name);

    /// The start of the day that the task belongs to.
    Instant date() const { return m_values.date; }
    /// @p date is any moment of the day.
    void setDate(Instant date);

    /// Seconds banked by finished runs.
    qint64 accumulatedSeconds() const { return m_values.accumulatedSeconds; }
    void setAccumulatedSeconds(qint64 seconds);

    /// Start of the current run; absent while the task does not run.
    std::optional<Instant> lastStartTime() const { return m_values.lastStartTime; }
    bool isRunning() const { return m_values.lastStartTime.has_value(); }

    /// A copy of a project code's text; an empty text is a value too.
    const std::optional<QString> &projectCode() const { return m_values.projectCode; }
    void setProjectCode(const std::optional<QString> &projectCode);

    /// Begins a run now, unless one goes on.
    void start();
    /// Banks the current run's whole seconds and ends it. The fraction is dropped. Fatal if the
    /// sum overflows.
    void stop();

    /// Banked seconds and those of the current run, at this moment: totalSeconds().
    qint64 currentTotalSeconds() const;
    /// currentTotalSeconds() as a clock, "01:02:05".
    QString formattedTime() const;
    double decimalHours() const;
    double roundedDecimalHours() const;
    /// The same for this task, in the store that it is kept in.
    std::string repairAdvice() const;
    QString description() const override;

    const Values &values() const override { return m_values; }

Q_SIGNALS:
    void nameChanged();
    void dateChanged();
    void accumulatedSecondsChanged();
    void lastStartTimeChanged();
    void projectCodeChanged();

private:
    static QString nameAndDay(const Values &values, const Calendar &calendar);

    Values &values() override { return m_values; }

    const Clock &m_clock;
    Values m_values;
};
