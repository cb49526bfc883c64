#include "views/sidebar/monthgrid.h"

std::vector<std::optional<QDate>> monthGrid(QDate month, const Calendar &calendar)
{
    if (!month.isValid())
        return {};
    const QDate first(month.year(), month.month(), 1);
    std::vector<std::optional<QDate>> grid(static_cast<std::size_t>(first.dayOfWeek() - 1));
    for (int day = 0; day < month.daysInMonth(); ++day) {
        const QDate date = first.addDays(day);
        if (calendar.startOfDay(date))
            grid.emplace_back(date);
    }
    while (grid.size() % 7 != 0)
        grid.emplace_back();
    return grid;
}
