#pragma once

#include "hours/period.h"

#include <QList>
#include <QStringList>

#include <stdexcept>

/// What the hours are added up for.
enum class Key { Day, ProjectCode, Task };

enum class Format { Table, Csv, Json };

/// What the program is asked for on its command line.
struct Options {
    bool wantsHelp = false;
    Period period;
    /// At least one, each once; in the order of the columns, and of the lines by them.
    QList<Key> keys{Key::ProjectCode};
    Format format = Format::Table;
};

/// What was asked for makes no sense; what() says why, in Danish.
class UsageError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// Reads @p arguments, without the program's name. Without a period this is the month of @p today.
/// Throws UsageError.
Options optionsFrom(const QStringList &arguments, QDate today);

/// How the program is called, in Danish, as one line.
QString usageLine();
/// What --help prints, in Danish.
QString helpText();
