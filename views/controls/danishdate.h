#pragma once

#include <QDate>
#include <QString>

/// The day in full: "mandag 3. marts 2025".
QString danishDay(QDate day);

/// The day's month: "marts 2025".
QString danishMonth(QDate day);
