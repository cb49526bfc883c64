#include "model/task.h"

#include "model/clock.h"
#include "model/durations.h"
#include "model/modelcontext.h"

#include <utility>

using namespace Qt::StringLiterals;

Task::Task(const Clock &clock, const QString &name, Instant date,
           std::optional<QString> projectCode, qint64 sortOrder)
    : Task(clock, Values{newValues(clock, sortOrder),
                         name,
                         clock.calendar().startOfDay(date),
                         0,
                         {},
                         std::move(projectCode)})
{
}

Task::Task(const Clock &clock, const Values &values)
    : Record(type)
    , m_clock(clock)
    , m_values(values)
{
}

void Task::setName(const QString &name)
{
    if (m_values.name == name)
        return;
    m_values.name = name;
    Q_EMIT nameChanged();
    Q_EMIT changed();
}

void Task::setDate(Instant date)
{
    const Instant start = m_clock.calendar().startOfDay(date);
    if (m_values.date == start)
        return;
    m_values.date = start;
    Q_EMIT dateChanged();
    Q_EMIT changed();
}

void Task::setAccumulatedSeconds(qint64 seconds)
{
    if (m_values.accumulatedSeconds == seconds)
        return;
    m_values.accumulatedSeconds = seconds;
    Q_EMIT accumulatedSecondsChanged();
    Q_EMIT changed();
}

void Task::setProjectCode(const std::optional<QString> &projectCode)
{
    if (m_values.projectCode == projectCode)
        return;
    m_values.projectCode = projectCode;
    Q_EMIT projectCodeChanged();
    Q_EMIT changed();
}

void Task::start()
{
    if (m_values.lastStartTime)
        return;
    m_values.lastStartTime = m_clock.now();
    Q_EMIT lastStartTimeChanged();
    Q_EMIT changed();
}

void Task::stop()
{
    if (!m_values.lastStartTime)
        return;
    // Both fields change before anybody is told, so that nobody sees the run counted twice.
    m_values.accumulatedSeconds = currentTotalSeconds();
    m_values.lastStartTime.reset();
    Q_EMIT accumulatedSecondsChanged();
    Q_EMIT lastStartTimeChanged();
    Q_EMIT changed();
}

qint64 Task::totalSeconds(const Values &values, Instant now, const FatalAdvice &advice)
{
    if (!values.lastStartTime)
        return values.accumulatedSeconds;
    return checkedSum(values.accumulatedSeconds,
                      truncatedToInt(now - *values.lastStartTime, advice), advice);
}

const char *Task::faultOfTotal(const Values &values, Instant now)
{
    if (!values.lastStartTime)
        return nullptr;
    const double run = now - *values.lastStartTime;
    if (const char *const fault = faultOfConversion(run))
        return fault;
    return faultOfSum(values.accumulatedSeconds, truncatedToInt(run));
}

qint64 Task::currentTotalSeconds() const
{
    return totalSeconds(m_values, m_clock.now(), [this] { return repairAdvice(); });
}

QString Task::formattedTime() const
{
    return clockText(currentTotalSeconds());
}

double Task::decimalHours() const
{
    return ::decimalHours(currentTotalSeconds());
}

double Task::roundedDecimalHours() const
{
    return ::roundedDecimalHours(currentTotalSeconds());
}

QString Task::description() const
{
    // The current run is not added up, as a sum that does not fit would end the program.
    QString description =
        nameAndDay(m_values, m_clock.calendar()) + u", "_s + clockText(m_values.accumulatedSeconds);
    if (m_values.lastStartTime)
        description +=
            u", running since "_s +
            m_clock.calendar().dateTime(*m_values.lastStartTime).toString(u"yyyy-MM-dd HH:mm:ss"_s);
    return description;
}

std::string Task::repairAdvice(const Values &values, const Calendar &calendar,
                               const QString &storePath)
{
    QString advice = u"The time of the "_s + nameAndDay(values, calendar) +
                     u" cannot be added up (accumulatedSeconds "_s +
                     QString::number(values.accumulatedSeconds);
    if (values.lastStartTime)
        advice += u", lastStartTime "_s + QString::number(*values.lastStartTime, 'f', 3);
    advice += u")."_s;
    if (!storePath.isEmpty())
        advice += u" It is kept in the store \""_s + storePath +
                  u"\". This sets it to zero there: UPDATE Task SET accumulatedSeconds = 0, "
                  "lastStartTime = NULL WHERE id = x'"_s +
                  QString::fromLatin1(values.id.toRfc4122().toHex()) + u"';"_s;
    return advice.toStdString();
}

std::string Task::repairAdvice() const
{
    const auto *const context = qobject_cast<const ModelContext *>(parent());
    return repairAdvice(m_values, m_clock.calendar(), context ? context->storePath() : QString());
}

QString Task::nameAndDay(const Values &values, const Calendar &calendar)
{
    return u"task "_s + quotedName(values.name) + u" of "_s +
           calendar.dayOf(values.date).toString(Qt::ISODate);
}
