#pragma once

#include <QFont>
#include <QObject>
#include <QString>
#include <QtQmlIntegration/qqmlintegration.h>

/// Measures names for the layout of a row.
class NameFit : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

public:
    using QObject::QObject;

    /// Width in pixels of the widest part of @p text that wrapping at words leaves whole.
    Q_INVOKABLE static qreal widestWord(const QString &text, const QFont &font);
};
