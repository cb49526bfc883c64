#pragma once

#include <functional>

/// Ends the program: writes what is unsaved, prints @p message on standard error and exits with
/// status 1, without a signal. Never returns.
[[noreturn]] void fatalError(const char *message);

/// Sets what fatalError() does first in order to write what is unsaved; an empty function for
/// nothing. The store sets it while it is open; the last one set counts.
void setFatalErrorRescue(std::function<void()> rescue);
