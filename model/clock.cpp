#include "model/clock.h"

#include <chrono>
#include <utility>

Clock::Clock(Calendar calendar)
    : m_calendar(std::move(calendar))
{
}

Clock::~Clock() = default;

Instant Clock::now() const
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}
