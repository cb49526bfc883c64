#include "views/controls/rowviewmodel.h"

void RowKeeper::setRow(RowViewModel *row)
{
    if (m_row.get() == row)
        return;
    m_row = row ? row->shared_from_this() : nullptr;
    Q_EMIT rowChanged();
}
