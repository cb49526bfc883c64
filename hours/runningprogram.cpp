#include "hours/runningprogram.h"

#include "model/sessionbus.h"
#include "model/storechecks.h"
#include "model/storeerror.h"
#include "model/storefiles.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusVariant>

using namespace Qt::StringLiterals;

namespace
{

constexpr auto service = "dk.tulo.TimeTracker"_L1;
constexpr auto objectPath = "/dk/tulo/TimeTracker"_L1;
constexpr auto interface = "dk.tulo.TimeTracker1"_L1;
constexpr auto typesOfTasks = "a(sbssx)"_L1;
constexpr auto tooLarge = "dk.tulo.TimeTracker1.Error.TooLarge"_L1;
constexpr auto noStore = "dk.tulo.TimeTracker1.Error.NoStore"_L1;

constexpr const char *olderVersion = "TULO Time Tracker is running, but is of an older version, "
                                     "which cannot be asked for its tasks. "
                                     "Quit it and try again.";
constexpr const char *noAnswer =
    "TULO Time Tracker is running, but does not answer. End it and try again.";

/// What the bus itself says to @p method about @p name; nothing if there is none of that name.
QVariant askBus(const QDBusConnection &bus, const QString &method, const QString &name)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
    question.setArguments({name});
    const QDBusMessage answer = bus.call(question);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0) : QVariant();
}

/// Hands the tasks in @p answer to @p receive.
void deliverAnswer(const QDBusMessage &answer, const TaskReceiver &receive)
{
    const auto tasks = answer.arguments().constFirst().value<QDBusArgument>();
    tasks.beginArray();
    while (!tasks.atEnd()) {
        QString day;
        bool hasCode = false;
        QString code;
        RecordedTask task;
        tasks.beginStructure();
        tasks >> day >> hasCode >> code >> task.name >> task.seconds;
        tasks.endStructure();
        task.day = QDate::fromString(day, Qt::ISODate);
        if (hasCode)
            task.projectCode = code;
        receive(task);
    }
    tasks.endArray();
}

} // namespace

RunningProgram::RunningProgram(const std::filesystem::path &path,
                               std::chrono::milliseconds patience)
    : m_path(realStorePath(path))
    , m_patience(patience)
{
}

bool RunningProgram::deliver(const Period &period, const TaskReceiver &receive)
{
    m_hasDelivered = false;
    m_changes.reset();
    try {
        const std::optional<QString> program = owner();
        if (!program)
            return false;
        deliverFrom(*program, period, receive);
        if (m_changes && m_changes != changesOf(*program))
            throw TasksChanged("The tasks have been changed while they were asked for");
        return true;
    } catch (const Gone &) {
        if (m_hasDelivered)
            throw TasksChanged("The program has ended while its tasks were asked for");
        return false;
    }
}

/// The bus's own name of the process that holds the store, if it has the program's name there.
std::optional<QString> RunningProgram::owner() const
{
    const std::optional<pid_t> holder = holderOf(m_path);
    // One that cannot be seen from here may be any process.
    if (!holder || *holder <= 0)
        return std::nullopt;
    neverStartABus();
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected())
        return std::nullopt;
    const QString owner = askBus(bus, u"GetNameOwner"_s, service).toString();
    if (owner.isEmpty() ||
        askBus(bus, u"GetConnectionUnixProcessID"_s, owner).toLongLong() != *holder)
        return std::nullopt;
    return owner;
}

/// In parts, if it is more than one answer holds.
void RunningProgram::deliverFrom(const QString &program, const Period &period,
                                 const TaskReceiver &receive)
{
    QDBusMessage question =
        QDBusMessage::createMethodCall(program, objectPath, interface, u"Tasks"_s);
    question.setArguments({period.first.toString(Qt::ISODate), period.last.toString(Qt::ISODate)});
    const QDBusMessage answer = answerTo(question);
    if (answer.type() == QDBusMessage::ReplyMessage) {
        if (answer.signature() != typesOfTasks)
            throw StoreError(olderVersion);
        deliverAnswer(answer, [&](const RecordedTask &task) {
            m_hasDelivered = true;
            receive(task);
        });
        return;
    }
    if (answer.errorName() != tooLarge || period.first == period.last)
        throw StoreError(answer.errorMessage().toStdString());
    if (!m_changes)
        m_changes = changesOf(program);
    const QDate middle = period.first.addDays(period.first.daysTo(period.last) / 2);
    deliverFrom(program, {period.first, middle}, receive);
    deliverFrom(program, {middle.addDays(1), period.last}, receive);
}

qulonglong RunningProgram::changesOf(const QString &program) const
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        program, objectPath, u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
    question.setArguments({interface, u"Changes"_s});
    const QDBusMessage answer = answerTo(question);
    if (answer.type() != QDBusMessage::ReplyMessage)
        throw StoreError(answer.errorMessage().toStdString());
    return answer.arguments().value(0).value<QDBusVariant>().variant().toULongLong();
}

/// An answer or an error of the program itself. Throws Gone, or StoreError.
QDBusMessage RunningProgram::answerTo(const QDBusMessage &question) const
{
    QDBusMessage call = question;
    call.setAutoStartService(false);
    const QDBusConnection bus = QDBusConnection::sessionBus();
    const QDBusMessage answer = bus.call(call, QDBus::Block, static_cast<int>(m_patience.count()));
    if (answer.type() == QDBusMessage::ReplyMessage)
        return answer;
    switch (QDBusError(answer).type()) {
    case QDBusError::UnknownMethod:
    case QDBusError::UnknownInterface:
    case QDBusError::UnknownObject:
    case QDBusError::UnknownProperty:
        throw StoreError(olderVersion);
    case QDBusError::NoReply:
    case QDBusError::Timeout:
    case QDBusError::TimedOut:
        // The bus says the same at once when a program ends that has not answered.
        if (askBus(bus, u"NameHasOwner"_s, call.service()).toBool())
            throw StoreError(noAnswer);
        throw Gone();
    case QDBusError::ServiceUnknown:
    case QDBusError::Disconnected:
        throw Gone();
    default:
        if (answer.errorName() == noStore ||
            answer.errorName() == "org.freedesktop.DBus.Error.NameHasNoOwner"_L1)
            throw Gone();
        return answer;
    }
}
