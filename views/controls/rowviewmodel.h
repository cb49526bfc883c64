#pragma once

#include "views/controls/objectlistmodel.h"

#include <QHash>
#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>
#include <utility>

/// The view-model of a list's row. The list shares it with the row's delegate, which may fade out
/// after the row has gone (see RowKeeper).
class RowViewModel : public QObject, public std::enable_shared_from_this<RowViewModel>
{
    Q_OBJECT
    QML_ANONYMOUS
};

/// Declared in a delegate, keeps the view-model of its row for as long as there is the delegate.
class RowKeeper : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(RowViewModel *row READ row WRITE setRow NOTIFY rowChanged REQUIRED)

public:
    using QObject::QObject;

    RowViewModel *row() const { return m_row.get(); }
    void setRow(RowViewModel *row);

Q_SIGNALS:
    void rowChanged();

private:
    std::shared_ptr<RowViewModel> m_row;
};

/// Gives @p rows the rows of @p objects, in their order: those that @p rowOf has stay, @p make
/// makes the others, and @p rowOf lets go of the rest.
template<class Object, class Row, class Make>
void setRowsOf(const QList<Object *> &objects, QHash<Object *, std::shared_ptr<Row>> &rowOf,
               ObjectListModel &rows, const Make &make)
{
    const auto before = std::exchange(rowOf, {});
    QList<QObject *> listed;
    listed.reserve(objects.size());
    rowOf.reserve(objects.size());
    for (Object *object : objects) {
        std::shared_ptr<Row> row = before.value(object);
        if (!row)
            row = make(*object);
        listed.append(row.get());
        rowOf.insert(object, std::move(row));
    }
    rows.setObjects(listed);
}
