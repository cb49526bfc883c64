#pragma once

#include "model/livequery.h"
#include "model/projectcode.h"
#include "views/controls/objectlistmodel.h"

#include <QFont>
#include <QObject>
#include <QVariant>
#include <QtQmlIntegration/qqmlintegration.h>

/// The project codes that the menu of every row offers.
class ProjectCodeMenuModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the list of rows")
    Q_PROPERTY(ObjectListModel *codes READ codes CONSTANT)

public:
    /// @p modelContext outlives it.
    explicit ProjectCodeMenuModel(ModelContext &modelContext);

    /// The menu's entry for a code's text: 0, "Ingen", for none (an invalid value) and for one that
    /// is not on the list; the codes come after that and a divider.
    Q_INVOKABLE int entryOf(const QVariant &code);
    /// The menu's last entry, counted likewise.
    Q_INVOKABLE int lastEntry() const;
    /// Width of the widest code's text in @p font, in pixels.
    Q_INVOKABLE qreal textWidth(const QFont &font);

    /// All project codes by sortOrder.
    ObjectListModel *codes() { return &m_codes; }

private:
    void update();

    LiveQuery<ProjectCode> m_query;
    ObjectListModel m_codes;
};
