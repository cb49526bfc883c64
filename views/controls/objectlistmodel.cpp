#include "views/controls/objectlistmodel.h"

#include <QHash>
#include <QSet>

#include <algorithm>

void ObjectListModel::setObjects(const QList<QObject *> &objects)
{
    // QList's own comparison passes null to memcmp() where both are empty.
    if (std::ranges::equal(m_objects, objects))
        return;
    const qsizetype oldCount = m_objects.size();
    QHash<QObject *, qsizetype> place;
    for (qsizetype i = 0; i < objects.size(); ++i)
        place.insert(objects.at(i), i);
    // An object that moves towards the beginning is removed and inserted again.
    QSet<QObject *> staying;
    qsizetype last = -1;
    for (QObject *object : std::as_const(m_objects)) {
        if (const qsizetype at = place.value(object, -1); at > last) {
            staying.insert(object);
            last = at;
        }
    }
    removeAllBut(staying);
    insertMissing(objects);
    if (m_objects.size() != oldCount)
        Q_EMIT countChanged();
}

void ObjectListModel::removeAllBut(const QSet<QObject *> &kept)
{
    for (int end = count(); end > 0;) {
        if (kept.contains(m_objects.at(end - 1))) {
            --end;
            continue;
        }
        int begin = end - 1;
        while (begin > 0 && !kept.contains(m_objects.at(begin - 1)))
            --begin;
        beginRemoveRows({}, begin, end - 1);
        for (int row = begin; row < end; ++row)
            m_objects.at(row)->disconnect(this);
        m_objects.remove(begin, end - begin);
        endRemoveRows();
        end = begin;
    }
}

void ObjectListModel::insertMissing(const QList<QObject *> &objects)
{
    const QSet<QObject *> present(m_objects.begin(), m_objects.end());
    for (int begin = 0; begin < objects.size();) {
        int end = begin;
        while (end < objects.size() && !present.contains(objects.at(end)))
            ++end;
        if (end == begin) {
            ++begin;
            continue;
        }
        beginInsertRows({}, begin, end - 1);
        m_objects.insert(begin, end - begin, nullptr);
        for (int row = begin; row < end; ++row) {
            m_objects[row] = objects.at(row);
            connect(objects.at(row), &QObject::destroyed, this, &ObjectListModel::removeDestroyed);
        }
        endInsertRows();
        begin = end;
    }
}

void ObjectListModel::removeDestroyed(QObject *object)
{
    const int row = static_cast<int>(m_objects.indexOf(object));
    if (row < 0)
        return;
    beginRemoveRows({}, row, row);
    m_objects.removeAt(row);
    endRemoveRows();
    Q_EMIT countChanged();
}

int ObjectListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant ObjectListModel::data(const QModelIndex &index, int role) const
{
    if (role != ObjectRole || !checkIndex(index, CheckIndexOption::IndexIsValid))
        return {};
    return QVariant::fromValue(m_objects.at(index.row()));
}

QHash<int, QByteArray> ObjectListModel::roleNames() const
{
    return {{ObjectRole, QByteArrayLiteral("object")}};
}
