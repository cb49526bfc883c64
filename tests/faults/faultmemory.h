#pragma once

#include <QtGlobal>

#include <sqlite3.h>

/// SQLite's memory while it lives: that of the machine, which can run out. SQLite keeps no store of
/// memory of its own meanwhile, so each piece that it needs is asked for here. There is one at a
/// time, and no database is open when it comes or goes.
class FaultMemory
{
public:
    enum class Duration { Once, ForGood };

    FaultMemory();
    ~FaultMemory();
    Q_DISABLE_COPY_MOVE(FaultMemory)

    /// Lets the allocation at @p position, counted from 1 and from now on, fail, and with
    /// Duration::ForGood all that follow.
    void failAt(int position, Duration duration);
    /// From now on nothing fails.
    void heal();
    /// Whether anything has failed since failAt().
    bool hasFailed() const { return m_hasFailed; }

private:
    struct Methods;

    /// Whether this allocation fails.
    bool fails();

    sqlite3_mem_methods m_machine{};
    int m_allocationsToFault = 0;
    Duration m_duration = Duration::Once;
    bool m_hasFailed = false;
};
