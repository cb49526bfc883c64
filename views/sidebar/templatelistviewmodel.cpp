#include "views/sidebar/templatelistviewmodel.h"

#include "views/controls/trimming.h"

TemplateListViewModel::TemplateListViewModel(ModelContext &modelContext)
    : SectionViewModel(modelContext, TaskTemplate::type)
{
}

void TemplateListViewModel::addTemplate()
{
    if (canAdd())
        add(std::make_unique<TaskTemplate>(clock(), trimmedOfBlanks(m_newTemplateName), count()));
}

void TemplateListViewModel::deleteTemplate(TaskTemplate *taskTemplate)
{
    remove(taskTemplate);
}

void TemplateListViewModel::setNewTemplateName(const QString &name)
{
    if (m_newTemplateName == name)
        return;
    m_newTemplateName = name;
    Q_EMIT newTemplateNameChanged();
}

bool TemplateListViewModel::canAdd() const
{
    return !trimmedOfBlanks(m_newTemplateName).isEmpty();
}

void TemplateListViewModel::clear()
{
    setNewTemplateName({});
}
