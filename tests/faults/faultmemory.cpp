#include "faultmemory.h"

namespace
{

/// SQLite hands no pointer to the methods, so they have to know whose they are.
FaultMemory *current = nullptr;

template<class... Arguments>
void configure(int option, Arguments... arguments)
{
    if (sqlite3_config(option, arguments...) != SQLITE_OK)
        qFatal("SQLite does not take this configuration");
}

} // namespace

struct FaultMemory::Methods {
    static void *allocate(int size)
    {
        return current->fails() ? nullptr : current->m_machine.xMalloc(size);
    }
    static void *reallocate(void *memory, int size)
    {
        return current->fails() ? nullptr : current->m_machine.xRealloc(memory, size);
    }
};

FaultMemory::FaultMemory()
{
    current = this;
    sqlite3_shutdown();
    configure(SQLITE_CONFIG_GETMALLOC, &m_machine);
    sqlite3_mem_methods faulty = m_machine;
    faulty.xMalloc = &Methods::allocate;
    faulty.xRealloc = &Methods::reallocate;
    configure(SQLITE_CONFIG_MALLOC, &faulty);
    // Nothing is set aside for connections and pages.
    configure(SQLITE_CONFIG_LOOKASIDE, 0, 0);
    configure(SQLITE_CONFIG_PAGECACHE, nullptr, 0, 0);
}

FaultMemory::~FaultMemory()
{
    sqlite3_shutdown();
    configure(SQLITE_CONFIG_MALLOC, &m_machine);
    current = nullptr;
}

void FaultMemory::failAt(int position, Duration duration)
{
    m_allocationsToFault = position;
    m_duration = duration;
    m_hasFailed = false;
}

void FaultMemory::heal()
{
    m_allocationsToFault = 0;
}

bool FaultMemory::fails()
{
    if (m_allocationsToFault == 0)
        return false;
    if (m_allocationsToFault > 1) {
        --m_allocationsToFault;
        return false;
    }
    if (m_duration == Duration::Once)
        m_allocationsToFault = 0;
    m_hasFailed = true;
    return true;
}
