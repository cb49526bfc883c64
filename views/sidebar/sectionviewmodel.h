#pragma once

#include "model/livequery.h"
#include "views/controls/objectlistmodel.h"

#include <QObject>
#include <QtQmlIntegration/qqmlintegration.h>

#include <memory>

/// What the side column's sections have in common: all records of one type in their order, and a
/// form that adds one.
class SectionViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Each section has its own")
    Q_PROPERTY(ObjectListModel *rows READ rows CONSTANT)
    Q_PROPERTY(bool isAdding READ isAdding NOTIFY isAddingChanged)
    Q_PROPERTY(bool showEmptyText READ showEmptyText NOTIFY showEmptyTextChanged)

public:
    /// Opens the form, or empties an open one.
    Q_INVOKABLE void startAdding();
    /// Closes the form; what was entered is lost.
    Q_INVOKABLE void cancelAdding();

    ObjectListModel *rows() { return &m_rows; }
    /// The form is open.
    bool isAdding() const { return m_isAdding; }
    /// Whether it is said that there are no records. Not while the form is open, and not if the
    /// store could not be read.
    bool showEmptyText() const { return m_isEmpty && !m_isAdding; }

Q_SIGNALS:
    void isAddingChanged();
    void showEmptyTextChanged();
    /// The user has asked for the form, which is there now: its first field takes the keyboard.
    void addingStarted();
    /// A record has been added; @p index is its row.
    void added(int index);

protected:
    /// @p modelContext outlives it.
    SectionViewModel(ModelContext &modelContext, RecordType type);

    const Clock &clock() const { return m_modelContext.clock(); }
    /// How many records are listed: the sortOrder of the next one.
    int count() const { return m_rows.count(); }
    /// Inserts a new record and closes the form.
    void add(std::unique_ptr<Record> record);
    void remove(Record *record);
    /// Empties the form.
    virtual void clear() = 0;

private:
    void update();
    void setIsAdding(bool isAdding);

    ModelContext &m_modelContext;
    RecordQuery m_query;
    ObjectListModel m_rows;
    bool m_isEmpty = false;
    bool m_isAdding = false;
};
