#include "views/row/projectcodemenumodel.h"

#include <QFontMetricsF>

#include <algorithm>
#include <cmath>

ProjectCodeMenuModel::ProjectCodeMenuModel(QObject *parent)
    : QObject(parent)
{
}

int ProjectCodeMenuModel::entryOf(const QVariant &code) const
{
    if (!m_query || !code.isValid())
        return 0;
    const QList<ProjectCode *> codes = m_query->results();
    const auto chosen = std::find_if(codes.begin(), codes.end(), [&](const ProjectCode *candidate) {
        return candidate->code() == code.toString();
    });
    return chosen == codes.end() ? 0 : static_cast<int>(chosen - codes.begin()) + 2;
}

int ProjectCodeMenuModel::lastEntry() const
{
    return m_codes.count() == 0 ? 0 : m_codes.count() + 1;
}

void ProjectCodeMenuModel::setModelContext(ModelContext *modelContext)
{
    if (m_modelContext == modelContext)
        return;
    m_modelContext = modelContext;
    m_query.reset();
    if (modelContext) {
        m_query = std::make_unique<LiveQuery<ProjectCode>>(*modelContext, allRecords(),
                                                           QueryOrder::SortOrder);
        connect(m_query.get(), &RecordQuery::changed, this, &ProjectCodeMenuModel::update);
    }
    Q_EMIT modelContextChanged();
    update();
}

void ProjectCodeMenuModel::setFont(const QFont &font)
{
    if (m_font == font)
        return;
    m_font = font;
    Q_EMIT fontChanged();
    update();
}

void ProjectCodeMenuModel::update()
{
    const QList<ProjectCode *> codes = m_query ? m_query->results() : QList<ProjectCode *>();
    m_codes.setObjects({codes.cbegin(), codes.cend()});
    qreal widest = 0;
    const QFontMetricsF metrics(m_font);
    for (const ProjectCode *code : codes)
        widest = std::max(widest, std::ceil(metrics.horizontalAdvance(code->displayName())));
    if (widest == m_textWidth)
        return;
    m_textWidth = widest;
    Q_EMIT textWidthChanged();
}
