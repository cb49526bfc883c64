#include "views/row/projectcodemenumodel.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

ProjectCodeMenuModel::ProjectCodeMenuModel(ModelContext &modelContext)
    : m_query(modelContext, allRecords(), QueryOrder::SortOrder)
{
    connect(&m_query, &RecordQuery::changed, this, &ProjectCodeMenuModel::update);
    update();
}

int ProjectCodeMenuModel::entryOf(const QVariant &code)
{
    if (!code.isValid())
        return 0;
    const QList<ProjectCode *> codes = m_query.results();
    const auto chosen = std::find_if(codes.begin(), codes.end(), [&](const ProjectCode *candidate) {
        return candidate->code() == code.toString();
    });
    return chosen == codes.end() ? 0 : static_cast<int>(chosen - codes.begin()) + 2;
}

int ProjectCodeMenuModel::lastEntry() const
{
    return m_codes.count() == 0 ? 0 : m_codes.count() + 1;
}

qreal ProjectCodeMenuModel::textWidth(const QFont &font)
{
    qreal widest = 0;
    const QFontMetricsF metrics(font);
    const QList<ProjectCode *> codes = m_query.results();
    for (const ProjectCode *code : codes)
        widest = std::max(widest, std::ceil(metrics.horizontalAdvance(code->displayName())));
    return widest;
}

void ProjectCodeMenuModel::update()
{
    const QList<ProjectCode *> codes = m_query.results();
    m_codes.setObjects({codes.cbegin(), codes.cend()});
}
