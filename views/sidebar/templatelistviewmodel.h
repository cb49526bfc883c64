#pragma once

#include "model/tasktemplate.h"
#include "views/sidebar/sectionviewmodel.h"

/// The templates, and the adding and deleting of one.
class TemplateListViewModel : public SectionViewModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the main window's content")
    Q_PROPERTY(QString newTemplateName READ newTemplateName WRITE setNewTemplateName NOTIFY
                   newTemplateNameChanged)
    Q_PROPERTY(bool canAdd READ canAdd NOTIFY newTemplateNameChanged)

public:
    /// @p modelContext outlives it.
    explicit TemplateListViewModel(ModelContext &modelContext);

    /// Adds a template of the entered name, without blanks at its ends, and closes the form. Does
    /// nothing if no name is left.
    Q_INVOKABLE void addTemplate();
    Q_INVOKABLE void deleteTemplate(TaskTemplate *taskTemplate);

    const QString &newTemplateName() const { return m_newTemplateName; }
    void setNewTemplateName(const QString &name);
    bool canAdd() const;

Q_SIGNALS:
    void newTemplateNameChanged();
    /// The user wants a task made of the template called @p name.
    void addTask(const QString &name);

protected:
    void clear() override;

private:
    QString m_newTemplateName;
};
