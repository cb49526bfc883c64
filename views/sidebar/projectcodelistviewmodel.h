#pragma once

#include "model/projectcode.h"
#include "views/sidebar/sectionviewmodel.h"

/// The project codes, and the adding and deleting of one.
class ProjectCodeListViewModel : public SectionViewModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the main window's content")
    Q_PROPERTY(QString newCode READ newCode WRITE setNewCode NOTIFY newCodeChanged)
    Q_PROPERTY(QString newName READ newName WRITE setNewName NOTIFY newNameChanged)
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY newCodeChanged)

public:
    /// @p modelContext outlives it.
    explicit ProjectCodeListViewModel(ModelContext &modelContext);

    /// Adds the entered code and name, without blanks at their ends, and closes the form. Does
    /// nothing if no code is left; the name may be empty.
    Q_INVOKABLE void addProjectCode();
    Q_INVOKABLE void deleteProjectCode(ProjectCode *code);

    const QString &newCode() const { return m_newCode; }
    void setNewCode(const QString &code);
    const QString &newName() const { return m_newName; }
    void setNewName(const QString &name);
    bool canAdd() const;

Q_SIGNALS:
    void newCodeChanged();
    void newNameChanged();

protected:
    void clear() override;

private:
    QString m_newCode;
    QString m_newName;
};
