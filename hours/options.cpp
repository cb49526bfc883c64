#include "hours/options.h"

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

[[noreturn]] void misused(const QString &reason)
{
    throw UsageError(reason.toStdString());
}

QString quoted(const QString &text)
{
    return u'"' + text + u'"';
}

/// The values of the options that take one, as they were given.
struct Given {
    std::optional<QString> month;
    std::optional<QString> week;
    std::optional<QString> from;
    std::optional<QString> to;
    std::optional<QString> by;
    std::optional<QString> format;
    bool wantsHelp = false;
};

/// An option that takes a value.
struct Option {
    QLatin1StringView name;
    std::optional<QString> Given::*value;
};

constexpr std::array options{
    Option{"--month"_L1, &Given::month}, Option{"--week"_L1, &Given::week},
    Option{"--from"_L1, &Given::from},   Option{"--to"_L1, &Given::to},
    Option{"--by"_L1, &Given::by},       Option{"--format"_L1, &Given::format},
};

const Option *optionNamed(const QString &name)
{
    for (const Option &option : options) {
        if (name == option.name)
            return &option;
    }
    return nullptr;
}

Given givenIn(const QStringList &arguments)
{
    Given given;
    for (qsizetype i = 0; i < arguments.size(); ++i) {
        const QString &argument = arguments.at(i);
        if (argument == "--help"_L1 || argument == "-h"_L1) {
            given.wantsHelp = true;
            continue;
        }
        const qsizetype sign = argument.indexOf(u'=');
        const QString name = argument.left(sign);
        const Option *const option = optionNamed(name);
        if (option == nullptr && argument.startsWith(u'-'))
            misused(u"ukendt valg "_s + quoted(argument));
        if (option == nullptr)
            misused(u"ukendt argument "_s + quoted(argument));
        std::optional<QString> &value = given.*(option->value);
        if (value)
            misused(name + u" er angivet to gange"_s);
        if (sign >= 0)
            value = argument.mid(sign + 1);
        else if (i + 1 < arguments.size())
            value = arguments.at(++i);
        else
            misused(name + u" mangler en værdi"_s);
    }
    return given;
}

QDate wantedDay(QLatin1StringView name, const QString &text)
{
    const std::optional<QDate> day = dayFrom(text);
    if (!day)
        misused(name + u' ' + quoted(text) + u" er ikke en dag som 2026-11-22"_s);
    return *day;
}

Period wantedPeriod(const Given &given, QDate today)
{
    if (given.month && given.week)
        misused(u"--month og --week kan ikke bruges sammen"_s);
    if ((given.month || given.week) && (given.from || given.to))
        misused(u"--from og --to kan ikke bruges sammen med --month eller --week"_s);
    if (given.month) {
        const std::optional<Period> month = monthFrom(*given.month);
        if (!month)
            misused(u"--month "_s + quoted(*given.month) + u" er ikke en måned som 2026-11"_s);
        return *month;
    }
    if (given.week) {
        const std::optional<Period> week = weekFrom(*given.week);
        if (!week)
            misused(u"--week "_s + quoted(*given.week) + u" er ikke en uge som 2026-W47"_s);
        return *week;
    }
    if (given.from.has_value() != given.to.has_value())
        misused(u"--from og --to skal bruges sammen"_s);
    if (!given.from)
        return monthOf(today);
    const Period period{wantedDay("--from"_L1, *given.from), wantedDay("--to"_L1, *given.to)};
    if (period.last < period.first)
        misused(u"--to ligger før --from"_s);
    return period;
}

QList<Key> wantedKeys(const QString &text)
{
    QList<Key> keys;
    const QStringList names = text.split(u',');
    for (const QString &name : names) {
        Key key{};
        if (name == "day"_L1)
            key = Key::Day;
        else if (name == "code"_L1)
            key = Key::ProjectCode;
        else if (name == "task"_L1)
            key = Key::Task;
        else
            misused(u"--by "_s + quoted(text) + u" er ikke code, day eller task"_s);
        if (keys.contains(key))
            misused(u"--by nævner "_s + name + u" to gange"_s);
        keys.append(key);
    }
    return keys;
}

Format wantedFormat(const QString &text)
{
    if (text == "table"_L1)
        return Format::Table;
    if (text == "csv"_L1)
        return Format::Csv;
    if (text == "json"_L1)
        return Format::Json;
    misused(u"--format "_s + quoted(text) + u" er ikke table, csv eller json"_s);
}

} // namespace

Options optionsFrom(const QStringList &arguments, QDate today)
{
    const Given given = givenIn(arguments);
    Options wanted;
    wanted.wantsHelp = given.wantsHelp;
    if (given.wantsHelp)
        return wanted;
    wanted.period = wantedPeriod(given, today);
    if (given.by)
        wanted.keys = wantedKeys(*given.by);
    if (given.format)
        wanted.format = wantedFormat(*given.format);
    return wanted;
}

QString usageLine()
{
    return u"Brug: tulo-hours [--month MÅNED | --week UGE | --from DAG --to DAG] "
           "[--by NØGLE[,NØGLE...]] [--format table|csv|json]\n"_s;
}

QString helpText()
{
    return usageLine() + uR"(
Viser de timer, der er taget tid på i TULO Time Tracker: de faktiske og dem, der
faktureres i kvarte timer. Uden valg: denne måned, pr. projektkode.

  --month MÅNED       en måned, som 2026-10
  --week UGE          en uge fra mandag til søndag, som 2026-W47
  --from DAG          fra og med denne dag, som 2026-10-01 ...
  --to DAG            ... til og med denne dag
  --by NØGLE          en linje for hver projektkode (code), dag (day) eller opgave
                      (task), eller for hver kombination af flere: code,day
  --format FORMAT     table: en tabel; csv: til regneark; json: til programmer
  --help              viser denne hjælp

Slutstatus: 0, når timerne er vist; 1, når de ikke kunne læses eller skrives;
2 ved forkert brug.
)"_s;
}
