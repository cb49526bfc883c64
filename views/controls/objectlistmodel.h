#pragma once

#include <QAbstractListModel>
#include <QList>
#include <QSet>
#include <QtQmlIntegration/qqmlintegration.h>

/// A list of objects for a view. A new list is applied as the difference to the old one, so that
/// what stays keeps its delegate. The objects belong to somebody else; a destroyed one leaves the
/// list.
class ObjectListModel : public QAbstractListModel
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(int count READ count NOTIFY countChanged)

public:
    enum Role {
        ObjectRole = Qt::UserRole + 1, ///< "object": the row's object.
    };

    using QAbstractListModel::QAbstractListModel;

    int count() const { return static_cast<int>(m_objects.size()); }
    const QList<QObject *> &objects() const { return m_objects; }
    /// Makes the list that of `objects`, none of them null and none of them twice, by removing and
    /// inserting contiguous rows.
    void setObjects(const QList<QObject *> &objects);

    int rowCount(const QModelIndex &parent = {}) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    QHash<int, QByteArray> roleNames() const override;

Q_SIGNALS:
    void countChanged();

private:
    void removeAllBut(const QSet<QObject *> &kept);
    void insertMissing(const QList<QObject *> &objects);
    void removeDestroyed(QObject *object);

    QList<QObject *> m_objects;
};
