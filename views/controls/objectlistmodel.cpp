#include "views/controls/objectlistmodel.h"

#include <QSet>

#include <algorithm>
#include <vector>

namespace
{

QList<QObject *> distinct(const QList<QObject *> &objects)
{
    QList<QObject *> result;
    QSet<QObject *> seen{nullptr};
    result.reserve(objects.size());
    for (QObject *object : objects) {
        if (!seen.contains(object)) {
            seen.insert(object);
            result.append(object);
        }
    }
    return result;
}

/// Marks the values of a longest increasing subsequence of `sequence`, a permutation of 0, 1, …
std::vector<bool> longestIncreasing(const std::vector<int> &sequence)
{
    std::vector<int> tails; // per length: index of the least value that ends such a subsequence
    std::vector<int> previous(sequence.size(), -1);
    for (int i = 0; i < static_cast<int>(sequence.size()); ++i) {
        const auto tail = std::lower_bound(tails.begin(), tails.end(), i,
                                           [&](int a, int b) { return sequence[a] < sequence[b]; });
        if (tail != tails.begin())
            previous[i] = *(tail - 1);
        if (tail == tails.end())
            tails.push_back(i);
        else
            *tail = i;
    }
    std::vector<bool> isPart(sequence.size(), false);
    for (int i = tails.empty() ? -1 : tails.back(); i >= 0; i = previous[i])
        isPart[sequence[i]] = true;
    return isPart;
}

} // namespace

void ObjectListModel::setObjects(const QList<QObject *> &objects)
{
    const QList<QObject *> target = distinct(objects);
    if (std::equal(target.begin(), target.end(), m_objects.begin(), m_objects.end()))
        return;
    const qsizetype oldCount = m_objects.size();
    removeAllBut(target);
    moveLike(target);
    insertMissing(target);
    if (m_objects.size() != oldCount)
        Q_EMIT countChanged();
}

void ObjectListModel::removeAllBut(const QList<QObject *> &objects)
{
    const QSet<QObject *> kept(objects.begin(), objects.end());
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

/// Brings the rows into the order that they have in `objects`; those that are in order among each
/// other already, stay.
void ObjectListModel::moveLike(const QList<QObject *> &objects)
{
    const QSet<QObject *> present(m_objects.begin(), m_objects.end());
    QList<QObject *> ordered;
    QHash<QObject *, int> rank;
    for (QObject *object : objects) {
        if (present.contains(object)) {
            rank.insert(object, static_cast<int>(ordered.size()));
            ordered.append(object);
        }
    }
    std::vector<int> ranks;
    ranks.reserve(m_objects.size());
    for (QObject *object : std::as_const(m_objects))
        ranks.push_back(rank.value(object));
    const std::vector<bool> stays = longestIncreasing(ranks);

    // Each of the others goes behind its predecessor, which is in its place by then.
    for (int i = 0; i < ordered.size(); ++i) {
        if (stays[i])
            continue;
        const int from = static_cast<int>(m_objects.indexOf(ordered.at(i)));
        const int behind = i == 0 ? 0 : static_cast<int>(m_objects.indexOf(ordered.at(i - 1))) + 1;
        if (behind == from)
            continue;
        beginMoveRows({}, from, from, {}, behind);
        m_objects.move(from, behind > from ? behind - 1 : behind);
        endMoveRows();
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
