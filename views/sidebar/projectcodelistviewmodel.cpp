#include "views/sidebar/projectcodelistviewmodel.h"

#include "views/controls/trimming.h"

ProjectCodeListViewModel::ProjectCodeListViewModel(ModelContext &modelContext)
    : SectionViewModel(modelContext, ProjectCode::type)
{
}

void ProjectCodeListViewModel::addProjectCode()
{
    if (canAdd())
        add(std::make_unique<ProjectCode>(clock(), trimmedOfBlanks(m_newCode),
                                          trimmedOfBlanks(m_newName), count()));
}

void ProjectCodeListViewModel::deleteProjectCode(ProjectCode *code)
{
    remove(code);
}

void ProjectCodeListViewModel::setNewCode(const QString &code)
{
    if (m_newCode == code)
        return;
    m_newCode = code;
    Q_EMIT newCodeChanged();
}

void ProjectCodeListViewModel::setNewName(const QString &name)
{
    if (m_newName == name)
        return;
    m_newName = name;
    Q_EMIT newNameChanged();
}

bool ProjectCodeListViewModel::canAdd() const
{
    return !trimmedOfBlanks(m_newCode).isEmpty();
}

void ProjectCodeListViewModel::clear()
{
    setNewCode({});
    setNewName({});
}
