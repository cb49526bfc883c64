#include "views/row/timeentry.h"

#include "../support/reckonedtime.h"
#include "fuzz.h"
#include "model/durations.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace
{

/// An input is what is typed, in UTF-8; or after a byte that UTF-8 never has in UTF-16, which may
/// hold halves of characters.
QString entryOf(const std::uint8_t *data, std::size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char *>(data), static_cast<qsizetype>(size));
    if (!bytes.startsWith('\xff'))
        return QString::fromUtf8(bytes);
    QString entry;
    for (qsizetype at = 1; at + 1 < bytes.size(); at += 2)
        entry += QChar(static_cast<uchar>(bytes[at]), static_cast<uchar>(bytes[at + 1]));
    return entry;
}

/// Nothing if the program would end.
std::optional<qint64> secondsOf(const QString &entry)
{
    try {
        return secondsOfTimeEntry(entry);
    } catch (const FatalError &) {
        return std::nullopt;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    const QString entry = entryOf(data, size);
    const std::optional<qint64> seconds = secondsOf(entry);
    expect(seconds == reckonedSeconds(entry), "a time is what it is reckoned to be");
    expect(secondsOf(u"\t "_s + entry + u'\u00a0') == seconds, "blanks around a time do not count");
    if (seconds)
        expect(secondsOf(clockText(*seconds)) == seconds, "a time that is shown can be entered");
    return 0;
}
