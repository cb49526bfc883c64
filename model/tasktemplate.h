#pragma once

#include "model/record.h"

/// A task name kept for use again.
class TaskTemplate : public Record
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Templates are made by the program's views and owned by the store")
    Q_PROPERTY(QString name READ name CONSTANT)

public:
    static constexpr RecordType type = RecordType::TaskTemplate;

    struct Values : Record::Values {
        QString name;
    };

    /// A new template, not yet stored.
    TaskTemplate(const Clock &clock, const QString &name, qint64 sortOrder = 0);
    /// A template as the store holds it.
    explicit TaskTemplate(const Values &values);

    /// The name that a task made from the template gets.
    const QString &name() const { return m_values.name; }

    QString description() const override;

    const Values &values() const override { return m_values; }

private:
    Values &values() override { return m_values; }

    Values m_values;
};
