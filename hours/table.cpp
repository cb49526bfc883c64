#include "hours/table.h"

#include "hours/text.h"

#include <clocale>
#include <cwchar>

#include <algorithm>
#include <numeric>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

constexpr int gap = 2;

/// While it lives, the C library takes wide characters for what they are in Unicode.
class UnicodeLocale
{
public:
    UnicodeLocale()
        : m_locale(::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr))
    {
        if (m_locale != nullptr)
            m_former = ::uselocale(m_locale);
    }
    ~UnicodeLocale()
    {
        if (m_locale == nullptr)
            return;
        ::uselocale(m_former);
        ::freelocale(m_locale);
    }
    Q_DISABLE_COPY_MOVE(UnicodeLocale)

private:
    locale_t m_locale;
    locale_t m_former = nullptr;
};

int cellsOfOne(char32_t character)
{
    // One that the C library does not know is drawn as some sign.
    const int cells = ::wcwidth(static_cast<wchar_t>(character));
    return cells < 0 ? 1 : cells;
}

/// Whether @p character does something to a terminal, or to the order of the letters, instead of
/// being shown.
bool isControl(char32_t character)
{
    switch (QChar::category(character)) {
    case QChar::Other_Control:
    case QChar::Separator_Line:
    case QChar::Separator_Paragraph:
        return true;
    default:
        break;
    }
    switch (QChar::direction(character)) {
    case QChar::DirLRE:
    case QChar::DirLRO:
    case QChar::DirRLE:
    case QChar::DirRLO:
    case QChar::DirPDF:
    case QChar::DirLRI:
    case QChar::DirRLI:
    case QChar::DirFSI:
    case QChar::DirPDI:
        return true;
    default:
        return false;
    }
}

/// @p text in one line, without anything that a terminal would obey.
QString inOneLine(const QString &text)
{
    QString line;
    line.reserve(text.size());
    const QList<uint> characters = text.toUcs4();
    for (const char32_t character : characters) {
        if (isControl(character))
            line += u' ';
        else
            line += QChar::fromUcs4(character);
    }
    return line;
}

/// @p text in @p width cells: what does not fit gives way to an ellipsis.
QString fitted(const QString &text, int width)
{
    const int cells = cellsOf(text);
    if (cells <= width)
        return text + QString(width - cells, u' ');
    QString part;
    int left = width - 1;
    const QList<uint> characters = text.toUcs4();
    for (const char32_t character : characters) {
        if (cellsOfOne(character) > left)
            break;
        left -= cellsOfOne(character);
        part += QChar::fromUcs4(character);
    }
    return part + u'…' + QString(left, u' ');
}

QString toTheRight(const QString &figure, int width)
{
    return figure.rightJustified(width + gap);
}

/// Takes from the widest ones of @p widths until they and @p figures cells fit on @p screen.
void narrow(QList<int> &widths, int figures, const Screen &screen)
{
    constexpr int least = 8;
    if (!screen.width)
        return;
    const int room = *screen.width - figures - gap * static_cast<int>(widths.size() - 1);
    while (std::accumulate(widths.cbegin(), widths.cend(), 0) > room) {
        int &widest = *std::max_element(widths.begin(), widths.end());
        if (widest <= least)
            return;
        const int tooMuch = std::accumulate(widths.cbegin(), widths.cend(), 0) - room;
        const int second =
            std::accumulate(widths.cbegin(), widths.cend(), least, [&](int most, const int &width) {
                return &width == &std::as_const(widest) ? most : std::max(most, width);
            });
        widest = std::max({least, widest - tooMuch, std::min(second, widest - 1)});
    }
}

} // namespace

int cellsOf(const QString &text)
{
    const UnicodeLocale locale;
    int cells = 0;
    const QList<uint> characters = text.toUcs4();
    for (const char32_t character : characters)
        cells += cellsOfOne(character);
    return cells;
}

void writeTable(const Report &report, const Screen &screen, TextWriter &writer)
{
    const UnicodeLocale locale;
    const QList<Key> &keys = report.keys();
    const std::vector<const Report::Row *> rows = report.rows();

    QList<int> widths;
    for (const Key key : keys)
        widths.append(cellsOf(titleOf(key)));
    widths.front() = std::max(widths.front(), cellsOf(totalTitle));
    // The sums may be smaller than a line, where one is negative.
    int hoursWidth = std::max(cellsOf(hoursTitle), cellsOf(danishHours(report.total().hours)));
    int billableWidth =
        std::max(cellsOf(billableHoursTitle), cellsOf(danishHours(report.total().billableHours)));
    for (const Report::Row *const row : rows) {
        for (qsizetype i = 0; i < keys.size(); ++i)
            widths[i] = std::max(widths[i], cellsOf(inOneLine(textOf(row->first, keys[i]))));
        hoursWidth = std::max(hoursWidth, cellsOf(danishHours(row->second.hours)));
        billableWidth = std::max(billableWidth, cellsOf(danishHours(row->second.billableHours)));
    }
    narrow(widths, hoursWidth + billableWidth + 2 * gap, screen);

    const auto line = [&](const QStringList &texts, const QString &hours, const QString &billable) {
        QString line;
        for (qsizetype i = 0; i < texts.size(); ++i) {
            if (i > 0)
                line += QString(gap, u' ');
            line += fitted(texts[i], widths[i]);
        }
        return line + toTheRight(hours, hoursWidth) + toTheRight(billable, billableWidth);
    };
    const auto writeBold = [&](const QString &text) {
        writer.write(screen.hasBold ? u"\x1b[1m"_s + text + u"\x1b[0m\n"_s : text + u'\n');
    };

    QStringList texts;
    for (const Key key : keys)
        texts.append(titleOf(key));
    writeBold(line(texts, QString(hoursTitle), QString(billableHoursTitle)));
    for (const Report::Row *const row : rows) {
        texts.clear();
        for (const Key key : keys)
            texts.append(inOneLine(textOf(row->first, key)));
        writer.write(
            line(texts, danishHours(row->second.hours), danishHours(row->second.billableHours)) +
            u'\n');
    }
    texts = QStringList(keys.size());
    texts.front() = totalTitle;
    writeBold(
        line(texts, danishHours(report.total().hours), danishHours(report.total().billableHours)));
}
