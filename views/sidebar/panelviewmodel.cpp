#include "views/sidebar/panelviewmodel.h"

PanelViewModel::PanelViewModel(RecordType type, QObject *parent)
    : QObject(parent)
    , m_type(type)
{
}

void PanelViewModel::startAdding()
{
    clear();
    setIsAdding(true);
    Q_EMIT addingStarted();
}

void PanelViewModel::cancelAdding()
{
    setIsAdding(false);
    clear();
}

void PanelViewModel::setModelContext(ModelContext *modelContext)
{
    if (m_modelContext == modelContext)
        return;
    m_modelContext = modelContext;
    m_query.reset();
    if (modelContext) {
        // The number of records is what the user has entered by hand: they are all read.
        m_query = std::make_unique<RecordQuery>(*modelContext, m_type, allRecords(),
                                                QueryOrder::SortOrder);
        connect(m_query.get(), &RecordQuery::changed, this, &PanelViewModel::update);
    }
    Q_EMIT modelContextChanged();
    update();
}

void PanelViewModel::add(std::unique_ptr<Record> record)
{
    Record *const added = record.get();
    m_modelContext->insert(std::move(record));
    cancelAdding();
    Q_EMIT this->added(static_cast<int>(m_rows.objects().indexOf(added)));
}

void PanelViewModel::remove(Record *record)
{
    if (record && m_modelContext)
        m_modelContext->remove(record);
}

void PanelViewModel::update()
{
    QList<QObject *> records;
    if (m_query)
        records = {m_query->records().cbegin(), m_query->records().cend()};
    m_isEmpty = records.isEmpty() && m_query && m_query->isAnswered();
    m_rows.setObjects(records);
    Q_EMIT showEmptyTextChanged();
}

void PanelViewModel::setIsAdding(bool isAdding)
{
    if (m_isAdding == isAdding)
        return;
    m_isAdding = isAdding;
    Q_EMIT isAddingChanged();
    Q_EMIT showEmptyTextChanged();
}
