#pragma once

#include "model/record.h"

/// A billing or project code of the user's. Tasks carry a copy of its text, never a link to it.
class ProjectCode : public Record
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Project codes are made by the program's views and owned by the store")
    Q_PROPERTY(QString code READ code CONSTANT)
    Q_PROPERTY(QString name READ name CONSTANT)
    Q_PROPERTY(QString displayName READ displayName CONSTANT)

public:
    static constexpr RecordType type = RecordType::ProjectCode;

    struct Values : Record::Values {
        QString code;
        QString name;
    };

    /// A new project code, not yet stored.
    ProjectCode(const Clock &clock, const QString &code, const QString &name, qint64 sortOrder = 0);
    /// A project code as the store holds it.
    explicit ProjectCode(const Values &values);

    /// The code itself, as entered.
    const QString &code() const { return m_values.code; }
    /// What the code stands for; may be empty.
    const QString &name() const { return m_values.name; }
    /// "4711 – Support", or the code alone where it has no name.
    QString displayName() const;

    QString description() const override;

    const Values &values() const override { return m_values; }

private:
    Values &values() override { return m_values; }

    Values m_values;
};
