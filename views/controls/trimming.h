#pragma once

#include <QString>

// What people enter is trimmed before it is used; what counts as a blank differs by field.

/// @p text without blanks (Unicode space separators and tab) at its ends. Line breaks stay.
QString trimmedOfBlanks(const QString &text);

/// @p text without blanks and line breaks at its ends.
QString trimmedOfBlanksAndLineBreaks(const QString &text);
