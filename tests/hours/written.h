#pragma once

#include "hours/textwriter.h"

#include <QStringDecoder>
#include <QTemporaryFile>

#include <functional>

/// What @p write writes.
inline QString written(const std::function<void(TextWriter &)> &write)
{
    QTemporaryFile file;
    if (!file.open())
        return {};
    TextWriter writer(file.handle());
    write(writer);
    writer.finish();
    file.seek(0);
    // With its byte order mark, if it has one.
    return QStringDecoder(QStringDecoder::Utf8,
                          QStringDecoder::Flag::ConvertInitialBom)(file.readAll());
}
