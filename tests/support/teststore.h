#pragma once

#include "fakeclock.h"
#include "model/modelcontainer.h"
#include "model/task.h"

#include <QTemporaryDir>

/// A store in a directory of its own that can be closed and opened again.
class TestStore
{
public:
    explicit TestStore(const Clock &clock, SaveDelays delays = {})
        : m_clock(clock)
        , m_delays(delays)
    {
        open();
    }

    QString path() const { return m_directory.filePath(QStringLiteral("data/store.sqlite")); }
    ModelContext &context() { return m_container->mainContext(); }
    Backups &backups() { return m_container->backups(); }

    void open() { m_container = std::make_unique<ModelContainer>(path(), m_clock, m_delays); }
    void close() { m_container.reset(); }
    void reopen()
    {
        close();
        open();
    }

    /// Makes and inserts a record; the context owns it.
    template<class T, class... Arguments>
    T *insert(Arguments &&...arguments)
    {
        auto record = std::make_unique<T>(m_clock, std::forward<Arguments>(arguments)...);
        T *const inserted = record.get();
        context().insert(std::move(record));
        return inserted;
    }

    /// A task of today.
    Task *insertTask(const QString &name, qint64 sortOrder = 0)
    {
        return insert<Task>(name, m_clock.now(), std::nullopt, sortOrder);
    }

private:
    const Clock &m_clock;
    SaveDelays m_delays;
    QTemporaryDir m_directory;
    std::unique_ptr<ModelContainer> m_container;
};
