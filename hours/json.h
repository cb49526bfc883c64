#pragma once

#include "hours/report.h"
#include "hours/textwriter.h"

/// Writes @p report of @p period as one JSON object.
void writeJson(const Report &report, const Period &period, TextWriter &writer);
