#pragma once

#include <QFont>
#include <QString>

/// Width in pixels of the widest part of @p text that wrapping at words leaves whole.
qreal widestWord(const QString &text, const QFont &font);
