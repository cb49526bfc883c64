#include "model/clock.h"

#include <utility>

Clock::Clock(Calendar calendar)
    : m_calendar(std::move(calendar))
{
}

Clock::~Clock() = default;
