#include "app/instance/tasksinterface.h"

#include "model/clock.h"
#include "model/modelcontext.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMetaType>

#include <algorithm>

using namespace Qt::StringLiterals;

QDBusArgument &operator<<(QDBusArgument &argument, const RecordedTask &task)
{
    argument.beginStructure();
    argument << task.day.toString(Qt::ISODate) << task.projectCode.has_value()
             << task.projectCode.value_or(QString()) << task.name << task.seconds;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RecordedTask &task)
{
    QString day;
    bool hasCode = false;
    QString code;
    argument.beginStructure();
    argument >> day >> hasCode >> code >> task.name >> task.seconds;
    argument.endStructure();
    task.day = QDate::fromString(day, Qt::ISODate);
    task.projectCode = hasCode ? std::optional(code) : std::nullopt;
    return argument;
}

namespace
{

constexpr auto tooLarge = "dk.tulo.TimeTracker1.Error.TooLarge"_L1;
constexpr auto unreadable = "dk.tulo.TimeTracker1.Error.Unreadable"_L1;
constexpr auto noStore = "dk.tulo.TimeTracker1.Error.NoStore"_L1;
constexpr auto noStoreSentence = "TULO Time Tracker has no store open."_L1;

/// Nobody waits for the answer any more.
struct Unwanted {
};
/// The answer is larger than it may be.
struct TooLarge {
};

/// The day that @p text is, "2026-11-22"; an invalid one if there is no such day.
QDate dayFrom(const QString &text)
{
    const QDate day = QDate::fromString(text, Qt::ISODate);
    return day.toString(Qt::ISODate) == text ? day : QDate();
}

/// What is wrong with days that are asked for; nothing if they are well.
QString faultOf(const QString &from, const QString &to)
{
    for (const QString &text : {from, to}) {
        if (!dayFrom(text).isValid())
            return u"\"%1\" is no day. Write it like 2026-11-22."_s.arg(text.left(100));
    }
    if (dayFrom(from) > dayFrom(to))
        return u"The first day, %1, comes after the last, %2."_s.arg(from, to);
    return {};
}

/// What a text takes in a message: its length, its bytes and a NUL.
qint64 bytesOf(const QString &text)
{
    return 4 + text.toUtf8().size() + 1;
}

qint64 aligned(qint64 bytes, qint64 alignment)
{
    return (bytes + alignment - 1) / alignment * alignment;
}

/// What a task takes in a message.
qint64 bytesOf(const RecordedTask &task)
{
    qint64 bytes = aligned(bytesOf(task.day.toString(Qt::ISODate)), 4) + 4;
    bytes = aligned(bytes + bytesOf(task.projectCode.value_or(QString())), 4);
    bytes = aligned(bytes + bytesOf(task.name), 8);
    return bytes + 8;
}

/// The least that a task takes in a message, besides its texts' characters.
constexpr qint64 leastBytes = 40;

/// The answer with the tasks of @p period. Throws StoreError, Unwanted or TooLarge.
QVariant answerOf(RecordedPeriod &period, const std::atomic_bool &isUnwanted, qint64 limit)
{
    QDBusArgument tasks;
    qint64 bytes = 0;
    tasks.beginArray(QMetaType::fromType<RecordedTask>());
    try {
        period.deliver([&](const RecordedTask &task) {
            bytes += bytesOf(task);
            if (isUnwanted)
                throw Unwanted();
            if (bytes > limit)
                throw TooLarge();
            tasks << task;
        });
    } catch (...) {
        // Qt frees only arrays that have an end.
        tasks.endArray();
        throw;
    }
    tasks.endArray();
    return QVariant::fromValue(tasks);
}

QString sentenceOf(const StoreError &error)
{
    return QString::fromUtf8(error.what());
}

} // namespace

TasksInterface::TasksInterface(const QDBusConnection &bus, QObject *object, Limits limits)
    : QDBusAbstractAdaptor(object)
    , m_bus(bus)
    , m_limits(limits)
{
    qDBusRegisterMetaType<RecordedTask>();
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &TasksInterface::goOn);
    m_callers.setConnection(m_bus);
    m_callers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_callers, &QDBusServiceWatcher::serviceUnregistered, this,
            &TasksInterface::onCallerGone);
    m_thread.setMaxThreadCount(1);
}

TasksInterface::~TasksInterface()
{
    if (m_isUnwanted)
        *m_isUnwanted = true;
    m_thread.waitForDone();
}

void TasksInterface::answerFrom(const ModelContext &context)
{
    m_context = &context;
    const auto count = [this] { ++m_changes; };
    connect(&context, &ModelContext::inserted, this, count);
    connect(&context, &ModelContext::changed, this, count);
    connect(&context, &ModelContext::removed, this, count);
    connect(&context.clock(), &Clock::calendarChanged, this, count);
    connect(&context, &QObject::destroyed, this, &TasksInterface::onStoreGone);
}

void TasksInterface::Tasks(const QString &from, const QString &to, const QDBusMessage &message)
{
    message.setDelayedReply(true);
    if (const QString fault = faultOf(from, to); !fault.isEmpty()) {
        refuse(message, QDBusError::errorString(QDBusError::InvalidArgs), fault);
        return;
    }
    if (m_context == nullptr) {
        refuse(message, noStore, noStoreSentence);
        return;
    }
    m_questions.push_back({dayFrom(from), dayFrom(to), message});
    const QString caller = message.service();
    if (!caller.isEmpty() && !m_callers.watchedServices().contains(caller))
        m_callers.addWatchedService(caller);
    m_timer.start(0);
}

/// Does a part of the work for the first question, unless the other thread has it.
void TasksInterface::goOn()
{
    if (m_questions.empty() || m_isUnwanted)
        return;
    try {
        readOn();
    } catch (const StoreError &error) {
        refuse(m_questions.front().message, unreadable, sentenceOf(error));
        endFirst();
    }
}

void TasksInterface::readOn()
{
    const Question &question = m_questions.front();
    if (!m_reading)
        m_reading = std::make_unique<PeriodReading>(
            *m_context, m_context->clock().calendar().interval(question.from, question.to));
    if (m_reading->goOn()) {
        putTogether();
        return;
    }
    if (m_reading->characters() + m_reading->count() * leastBytes > limitOf(question)) {
        // The answer will not fit, so the rest need not be read.
        refuseAsTooLarge(question);
        endFirst();
        return;
    }
    m_timer.start(0);
}

/// Has the other thread make the answer of what has been read, and send it: for many tasks both
/// take long.
void TasksInterface::putTogether()
{
    m_isUnwanted = std::make_shared<std::atomic_bool>(false);
    m_thread.start([this, question = m_questions.front(), limit = limitOf(m_questions.front()),
                    isUnwanted = m_isUnwanted, bus = m_bus,
                    period = std::make_shared<RecordedPeriod>(m_reading->take())] {
        try {
            bus.send(question.message.createReply(answerOf(*period, *isUnwanted, limit)));
        } catch (const Unwanted &) {
            // Nothing is sent.
        } catch (const TooLarge &) {
            refuseAsTooLarge(question);
        } catch (const StoreError &error) {
            refuse(question.message, unreadable, sentenceOf(error));
        }
        QMetaObject::invokeMethod(this, &TasksInterface::endFirst, Qt::QueuedConnection);
    });
    m_reading.reset();
}

/// Forgets what has been read. To free a hundred thousand tasks takes longer than a slice, so the
/// other thread does it.
void TasksInterface::discardReading()
{
    if (m_reading)
        m_thread.start([period = std::make_shared<RecordedPeriod>(m_reading->take())] {});
    m_reading.reset();
}

/// The first question has been answered, or is wanted no more.
void TasksInterface::endFirst()
{
    const QString caller = m_questions.front().message.service();
    m_questions.pop_front();
    discardReading();
    m_isUnwanted.reset();
    if (std::none_of(m_questions.begin(), m_questions.end(), [&](const Question &question) {
            return question.message.service() == caller;
        }))
        m_callers.removeWatchedService(caller);
    if (!m_questions.empty())
        m_timer.start(0);
}

void TasksInterface::onCallerGone(const QString &caller)
{
    if (m_questions.empty())
        return;
    // The other thread ends what it has begun.
    const auto first = m_questions.begin() + (m_isUnwanted ? 1 : 0);
    const auto isGone = [&](const Question &question) {
        return question.message.service() == caller;
    };
    if (isGone(m_questions.front())) {
        if (m_isUnwanted)
            *m_isUnwanted = true;
        discardReading();
    }
    m_questions.erase(std::remove_if(first, m_questions.end(), isGone), m_questions.end());
    m_callers.removeWatchedService(caller);
}

void TasksInterface::onStoreGone()
{
    m_context = nullptr;
    m_reading.reset();
    while (m_questions.size() > (m_isUnwanted ? 1 : 0)) {
        refuse(m_questions.back().message, noStore, noStoreSentence);
        m_questions.pop_back();
    }
}

qint64 TasksInterface::limitOf(const Question &question) const
{
    return question.from == question.to ? m_limits.ofOneDay : m_limits.ofSeveralDays;
}

void TasksInterface::refuse(const QDBusMessage &message, const QString &error,
                            const QString &sentence) const
{
    m_bus.send(message.createErrorReply(error, sentence));
}

void TasksInterface::refuseAsTooLarge(const Question &question) const
{
    refuse(question.message, tooLarge,
           u"The tasks from %1 to %2 are more than one answer holds. Ask for fewer days."_s.arg(
               question.from.toString(Qt::ISODate), question.to.toString(Qt::ISODate)));
}
