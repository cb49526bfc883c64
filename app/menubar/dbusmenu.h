#pragma once

#include "app/menubar/busstructure.h"

#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QDeadlineTimer>
#include <QHash>
#include <QList>
#include <QObject>
#include <QVariantMap>

#include <chrono>
#include <optional>

/// One line of a menu.
struct MenuLine {
    /// Positive, and the line's own for as long as it is the same line.
    int id = 0;
    /// As the user reads it; a separator has none.
    QString label = {};
    bool isSeparator = false;
    bool isEnabled = true;
    /// Has a check mark or the place for one.
    std::optional<bool> isChecked = std::nullopt;

    bool operator==(const MenuLine &) const = default;
};

/// An item with all below it, as the bus carries it.
struct DBusMenuLayout {
    int id = 0;
    QVariantMap properties;
    QList<QDBusVariant> children;

    template<class Self>
    static auto members(Self &self)
    {
        return std::tie(self.id, self.properties, self.children);
    }
};

/// An item's properties, as the bus carries them.
struct DBusMenuProperties {
    int id = 0;
    QVariantMap properties;

    template<class Self>
    static auto members(Self &self)
    {
        return std::tie(self.id, self.properties);
    }
};

/// Names of an item's properties, as the bus carries them.
struct DBusMenuPropertyNames {
    int id = 0;
    QStringList names;

    template<class Self>
    static auto members(Self &self)
    {
        return std::tie(self.id, self.names);
    }
};

/// What has happened to an item, as the bus carries it.
struct DBusMenuEvent {
    int id = 0;
    QString name;
    QDBusVariant data;
    uint timestamp = 0;

    template<class Self>
    static auto members(Self &self)
    {
        return std::tie(self.id, self.name, self.data, self.timestamp);
    }
};

/// A flat menu that the desktop's bars show in their own style. It tells at once of lines that come
/// or go. What differs in a line it tells while some bar may have the menu open, and otherwise once
/// the menu is about to be seen. Its names on the bus are fixed by the protocol.
class DBusMenu : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.canonical.dbusmenu")
    Q_PROPERTY(uint Version READ version)
    Q_PROPERTY(QString TextDirection READ textDirection)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(QStringList IconThemePath READ iconThemePath)

public:
    /// Exports the menu on @p connection under @p path, for as long as it lives. A bar that has
    /// only said that it is about to show the menu is taken to show it for @p sign after it last
    /// said so.
    DBusMenu(const QDBusConnection &connection, const QString &path,
             std::chrono::milliseconds sign = std::chrono::minutes(1));
    ~DBusMenu() override;

    void setLines(const QList<MenuLine> &lines);
    /// Whether some bar may show the menu now.
    bool isOpen() const;

    uint version() const { return 3; }
    QString textDirection() const;
    QString status() const;
    QStringList iconThemePath() const { return {}; }

public Q_SLOTS:
    Q_SCRIPTABLE uint GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                                DBusMenuLayout &layout);
    Q_SCRIPTABLE QList<DBusMenuProperties> GetGroupProperties(const QList<int> &ids,
                                                              const QStringList &propertyNames);
    Q_SCRIPTABLE QDBusVariant GetProperty(int id, const QString &name);
    Q_SCRIPTABLE void Event(int id, const QString &eventId, const QDBusVariant &data,
                            uint timestamp);
    Q_SCRIPTABLE QList<int> EventGroup(const QList<DBusMenuEvent> &events);
    Q_SCRIPTABLE bool AboutToShow(int id);
    Q_SCRIPTABLE QList<int> AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors);

Q_SIGNALS:
    Q_SCRIPTABLE void ItemsPropertiesUpdated(const QList<DBusMenuProperties> &updated,
                                             const QList<DBusMenuPropertyNames> &removed);
    Q_SCRIPTABLE void LayoutUpdated(uint revision, int parentId);
    Q_SCRIPTABLE void ItemActivationRequested(int id, uint timestamp);

    /// The menu is about to be seen, so its lines should be brought up to date.
    void aboutToShow();
    /// The user has chosen a line.
    void chosen(int id);

private:
    const MenuLine *find(int id) const;
    DBusMenuLayout layoutOf(int id, int depth, const QStringList &propertyNames) const;
    bool handle(int id, const QString &eventId);
    QString caller() const;
    void noteOpening(QDeadlineTimer until);
    void noteClosing(const QString &bar);
    void tellOfLayout();

    QDBusConnection m_connection;
    QString m_path;
    QList<MenuLine> m_lines;
    uint m_revision = 1;
    // Something has changed that no bar was told of.
    bool m_isUntold = false;
    std::chrono::milliseconds m_sign;
    // By the bars' names on the bus: until when each of them may show the menu.
    QHash<QString, QDeadlineTimer> m_openUntil;
    QDBusServiceWatcher m_bars;
};
