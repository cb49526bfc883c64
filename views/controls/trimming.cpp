#include "views/controls/trimming.h"

#include <algorithm>

QString trimmedOfBlanks(const QString &text)
{
    const auto isBlank = [](QChar character) {
        return character == u'\t' || character.category() == QChar::Separator_Space;
    };
    const auto first = std::find_if_not(text.cbegin(), text.cend(), isBlank);
    const auto last = std::find_if_not(text.crbegin(), std::make_reverse_iterator(first), isBlank);
    return text.mid(first - text.cbegin(), last.base() - first);
}

QString trimmedOfBlanksAndLineBreaks(const QString &text)
{
    return text.trimmed();
}
