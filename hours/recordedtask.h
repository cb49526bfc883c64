#pragma once

#include "model/recordedtask.h"

#include <stdexcept>

/// The tasks changed while they were delivered. What has been delivered is to be forgotten, and the
/// delivery to begin again.
class TasksChanged : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};
