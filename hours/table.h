#pragma once

#include "hours/report.h"
#include "hours/textwriter.h"

/// Where a table is shown.
struct Screen {
    /// Its width in cells; texts are shortened to fit. Nothing if there is no limit.
    std::optional<int> width;
    /// Whether it knows the sequences that make letters bold.
    bool hasBold = false;
};

/// How many cells of a terminal @p text takes: wide characters two, combining ones none.
int cellsOf(const QString &text);

/// Writes @p report with aligned columns, texts to the left and figures to the right.
void writeTable(const Report &report, const Screen &screen, TextWriter &writer);
