#pragma once

#include "model/periodreading.h"

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QThreadPool>
#include <QTimer>

#include <atomic>
#include <deque>
#include <memory>

/// What other programs can ask about the recorded time over the bus: the interface
/// dk.tulo.TimeTracker1, whose methods' and properties' names these are. An answer is read from the
/// store in slices of the event loop and put together on another thread, one after the other.
class TasksInterface : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "dk.tulo.TimeTracker1")
    // dk.tulo.TimeTracker1.xml says the same, with explanations.
    Q_CLASSINFO("D-Bus Introspection",
                "  <interface name=\"dk.tulo.TimeTracker1\">\n"
                "    <property name=\"Changes\" type=\"t\" access=\"read\">\n"
                "      <annotation name=\"org.freedesktop.DBus.Property.EmitsChangedSignal\" "
                "value=\"false\"/>\n"
                "    </property>\n"
                "    <method name=\"Tasks\">\n"
                "      <arg name=\"from\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"to\" type=\"s\" direction=\"in\"/>\n"
                "      <arg name=\"tasks\" type=\"a(sbssx)\" direction=\"out\"/>\n"
                "    </method>\n"
                "  </interface>\n")
    Q_PROPERTY(qulonglong Changes READ changes)

public:
    /// The sizes, in bytes, that an answer may have: for several days, so that it neither takes
    /// much memory nor long, and for one day, which cannot be asked for in parts. The bus takes no
    /// array of more than 64 MiB.
    struct Limits {
        qint64 ofSeveralDays = qint64{2} << 20;
        qint64 ofOneDay = qint64{60} << 20;
    };

    /// Part of @p object, which is exported on @p bus. Answers with errors until there is a store.
    TasksInterface(const QDBusConnection &bus, QObject *object, Limits limits);
    TasksInterface(const QDBusConnection &bus, QObject *object)
        : TasksInterface(bus, object, Limits())
    {
    }
    /// Waits for the other thread.
    ~TasksInterface() override;

    /// Answers from the store of @p context from now on, as long as that lives.
    void answerFrom(const ModelContext &context);

    /// How often the tasks or their days may have changed while the program runs. Whoever asks for
    /// a period in parts can tell by it whether they fit together.
    qulonglong changes() const { return m_changes; }

    /// Whether a question is being answered.
    bool isReading() const { return !m_questions.empty(); }

public Q_SLOTS:
    /// Answers with the tasks from the day @p from to the day @p to.
    void Tasks(const QString &from, const QString &to, const QDBusMessage &message);

private:
    struct Question {
        QDate from;
        QDate to;
        QDBusMessage message;
    };

    void goOn();
    void readOn();
    void putTogether();
    void discardReading();
    void endFirst();
    void onCallerGone(const QString &caller);
    void onStoreGone();
    qint64 limitOf(const Question &question) const;
    // Both threads may send.
    void refuse(const QDBusMessage &message, const QString &error, const QString &sentence) const;
    void refuseAsTooLarge(const Question &question) const;

    QDBusConnection m_bus;
    Limits m_limits;
    const ModelContext *m_context = nullptr;
    qulonglong m_changes = 0;
    std::deque<Question> m_questions;
    /// What the first question is answered from; nothing before, and while the other thread has it.
    std::unique_ptr<PeriodReading> m_reading;
    /// There while the other thread has the first question: tells it that nobody waits any more.
    std::shared_ptr<std::atomic_bool> m_isUnwanted;
    QTimer m_timer;
    QDBusServiceWatcher m_callers;
    QThreadPool m_thread;
};
