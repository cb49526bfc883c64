#include "views/sidebar/sectionviewmodel.h"

SectionViewModel::SectionViewModel(ModelContext &modelContext, RecordType type)
    : m_modelContext(modelContext)
    // The number of records is what the user has entered by hand: they are all read.
    , m_query(modelContext, type, allRecords(), QueryOrder::SortOrder)
{
    connect(&m_query, &RecordQuery::changed, this, &SectionViewModel::update);
    update();
}

void SectionViewModel::startAdding()
{
    clear();
    setIsAdding(true);
    Q_EMIT addingStarted();
}

void SectionViewModel::cancelAdding()
{
    setIsAdding(false);
    clear();
}

void SectionViewModel::add(std::unique_ptr<Record> record)
{
    Record *const added = record.get();
    m_modelContext.insert(std::move(record));
    cancelAdding();
    Q_EMIT this->added(static_cast<int>(m_rows.objects().indexOf(added)));
}

void SectionViewModel::remove(Record *record)
{
    if (record)
        m_modelContext.remove(record);
}

void SectionViewModel::update()
{
    const QList<Record *> &records = m_query.records();
    m_rows.setObjects({records.cbegin(), records.cend()});
    m_isEmpty = records.isEmpty() && m_query.isAnswered();
    Q_EMIT showEmptyTextChanged();
}

void SectionViewModel::setIsAdding(bool isAdding)
{
    if (m_isAdding == isAdding)
        return;
    m_isAdding = isAdding;
    Q_EMIT isAddingChanged();
    Q_EMIT showEmptyTextChanged();
}
