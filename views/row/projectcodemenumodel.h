#pragma once

#include "model/livequery.h"
#include "model/projectcode.h"
#include "views/controls/objectlistmodel.h"

#include <QFont>
#include <QObject>
#include <QPointer>
#include <QVariant>
#include <QtQmlIntegration>

#include <memory>

/// The project codes that the picker's menu offers.
class ProjectCodeMenuModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(ModelContext *modelContext READ modelContext WRITE setModelContext NOTIFY
                   modelContextChanged REQUIRED)
    Q_PROPERTY(QFont font READ font WRITE setFont NOTIFY fontChanged REQUIRED)
    Q_PROPERTY(ObjectListModel *codes READ codes CONSTANT)
    Q_PROPERTY(qreal textWidth READ textWidth NOTIFY textWidthChanged)

public:
    explicit ProjectCodeMenuModel(QObject *parent = nullptr);

    /// The menu's entry for a code's text: 0, "Ingen", for none (an invalid value) and for one that
    /// is not on the list; the codes come after that and a divider.
    Q_INVOKABLE int entryOf(const QVariant &code) const;
    /// The menu's last entry, counted likewise.
    Q_INVOKABLE int lastEntry() const;

    ModelContext *modelContext() const { return m_modelContext; }
    void setModelContext(ModelContext *modelContext);
    /// The font of the entries.
    QFont font() const { return m_font; }
    void setFont(const QFont &font);
    /// All project codes by sortOrder.
    ObjectListModel *codes() { return &m_codes; }
    /// Width of the widest code's text in that font, in pixels.
    qreal textWidth() const { return m_textWidth; }

Q_SIGNALS:
    void modelContextChanged();
    void fontChanged();
    void textWidthChanged();

private:
    void update();

    QPointer<ModelContext> m_modelContext;
    QFont m_font;
    std::unique_ptr<LiveQuery<ProjectCode>> m_query;
    ObjectListModel m_codes;
    qreal m_textWidth = 0;
};
