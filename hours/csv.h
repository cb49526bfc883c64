#pragma once

#include "hours/report.h"
#include "hours/textwriter.h"

/// Writes @p report for a Danish spreadsheet: UTF-8 with a byte order mark, semicolons, decimal
/// commas, and no cell that a spreadsheet would take for a formula.
void writeCsv(const Report &report, TextWriter &writer);
