#pragma once

#include <functional>
#include <string>

/// Ends the program: writes what is unsaved, prints @p message, and @p advice on a line of its own
/// if there is any, on standard error and exits with status 1, without a signal. Never returns.
[[noreturn]] void fatalError(const char *message, const std::string &advice = {});

/// Sets what fatalError() does first in order to write what is unsaved; an empty function for
/// nothing. The store sets it while it is open; the last one set counts.
void setFatalErrorRescue(std::function<void()> rescue);
