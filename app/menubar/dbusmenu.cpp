#include "app/menubar/dbusmenu.h"

#include <QDBusMessage>
#include <QDBusMetaType>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int Root = 0;

QVariantMap only(const QStringList &names, QVariantMap properties)
{
    if (!names.isEmpty())
        properties.removeIf([&](const auto &entry) { return !names.contains(entry.key()); });
    return properties;
}

QVariantMap rootProperties()
{
    return {{u"children-display"_s, u"submenu"_s}};
}

/// What differs from the protocol's defaults, and what may change.
QVariantMap propertiesOf(const MenuLine &line)
{
    if (line.isSeparator)
        return {{u"type"_s, u"separator"_s}};
    // A single underscore would mark an access key.
    QVariantMap properties{{u"label"_s, QString(line.label).replace(u'_', u"__"_s)},
                           {u"enabled"_s, line.isEnabled}};
    if (line.isChecked) {
        properties[u"toggle-type"_s] = u"checkmark"_s;
        properties[u"toggle-state"_s] = *line.isChecked ? 1 : 0;
    }
    return properties;
}

} // namespace

DBusMenu::DBusMenu(const QDBusConnection &connection, const QString &path,
                   std::chrono::milliseconds sign)
    : m_connection(connection)
    , m_path(path)
    , m_sign(sign)
{
    m_bars.setConnection(connection);
    m_bars.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    connect(&m_bars, &QDBusServiceWatcher::serviceUnregistered, this, &DBusMenu::noteClosing);
    qDBusRegisterMetaType<DBusMenuLayout>();
    qDBusRegisterMetaType<DBusMenuProperties>();
    qDBusRegisterMetaType<QList<DBusMenuProperties>>();
    qDBusRegisterMetaType<DBusMenuPropertyNames>();
    qDBusRegisterMetaType<QList<DBusMenuPropertyNames>>();
    qDBusRegisterMetaType<DBusMenuEvent>();
    qDBusRegisterMetaType<QList<DBusMenuEvent>>();
    m_connection.registerObject(m_path, this,
                                QDBusConnection::ExportAllProperties |
                                    QDBusConnection::ExportScriptableSlots |
                                    QDBusConnection::ExportScriptableSignals);
}

DBusMenu::~DBusMenu()
{
    m_connection.unregisterObject(m_path);
}

void DBusMenu::setLines(const QList<MenuLine> &lines)
{
    if (lines == m_lines)
        return;
    const auto sameID = [](const MenuLine &a, const MenuLine &b) { return a.id == b.id; };
    const bool isSameLayout =
        std::equal(lines.cbegin(), lines.cend(), m_lines.cbegin(), m_lines.cend(), sameID);
    // Some bars size the menu by the lines that they know before they say that it opens.
    if (isSameLayout && !isOpen()) {
        m_lines = lines;
        m_isUntold = true;
        return;
    }
    QList<DBusMenuProperties> updated;
    if (isSameLayout) {
        for (qsizetype i = 0; i < lines.size(); ++i) {
            if (lines[i] != m_lines[i])
                updated.append({lines[i].id, propertiesOf(lines[i])});
        }
    }
    m_lines = lines;
    // Nobody knows which lines a bar has read that was not told of them.
    if (!isSameLayout || m_isUntold)
        tellOfLayout();
    else
        Q_EMIT ItemsPropertiesUpdated(updated, {});
}

bool DBusMenu::isOpen() const
{
    return std::any_of(m_openUntil.cbegin(), m_openUntil.cend(),
                       [](const QDeadlineTimer &until) { return !until.hasExpired(); });
}

QString DBusMenu::textDirection() const
{
    return u"ltr"_s;
}

QString DBusMenu::status() const
{
    return u"normal"_s;
}

uint DBusMenu::GetLayout(int parentId, int recursionDepth, const QStringList &propertyNames,
                         DBusMenuLayout &layout)
{
    if (parentId != Root && !find(parentId))
        sendErrorReply(QDBusError::InvalidArgs, u"No such item"_s);
    else
        layout = layoutOf(parentId, recursionDepth, propertyNames);
    return m_revision;
}

QList<DBusMenuProperties> DBusMenu::GetGroupProperties(const QList<int> &ids,
                                                       const QStringList &propertyNames)
{
    QList<DBusMenuProperties> properties;
    const auto add = [&](int id) {
        properties.append({id, layoutOf(id, 0, propertyNames).properties});
    };
    // An empty list of ids means all items.
    if (ids.isEmpty()) {
        add(Root);
        for (const MenuLine &line : m_lines)
            add(line.id);
    }
    for (const int id : ids) {
        if (id == Root || find(id))
            add(id);
    }
    return properties;
}

QDBusVariant DBusMenu::GetProperty(int id, const QString &name)
{
    const QVariant value = layoutOf(id, 0, {name}).properties.value(name);
    if (!value.isValid()) {
        sendErrorReply(QDBusError::InvalidArgs, u"No such property"_s);
        return QDBusVariant(QString());
    }
    return QDBusVariant(value);
}

void DBusMenu::Event(int id, const QString &eventId, const QDBusVariant &, uint)
{
    if (!handle(id, eventId))
        sendErrorReply(QDBusError::InvalidArgs, u"No such item"_s);
}

QList<int> DBusMenu::EventGroup(const QList<DBusMenuEvent> &events)
{
    QList<int> unknown;
    for (const DBusMenuEvent &event : events) {
        if (!handle(event.id, event.name))
            unknown.append(event.id);
    }
    return unknown;
}

bool DBusMenu::AboutToShow(int id)
{
    const uint revision = m_revision;
    if (id == Root)
        noteOpening(QDeadlineTimer(m_sign));
    return m_revision != revision;
}

QList<int> DBusMenu::AboutToShowGroup(const QList<int> &ids, QList<int> &idErrors)
{
    QList<int> needUpdate;
    for (const int id : ids) {
        if (id != Root && !find(id))
            idErrors.append(id);
        else if (AboutToShow(id))
            needUpdate.append(id);
    }
    return needUpdate;
}

const MenuLine *DBusMenu::find(int id) const
{
    const auto found = std::find_if(m_lines.cbegin(), m_lines.cend(),
                                    [id](const MenuLine &line) { return line.id == id; });
    return found != m_lines.cend() ? &*found : nullptr;
}

DBusMenuLayout DBusMenu::layoutOf(int id, int depth, const QStringList &propertyNames) const
{
    if (const MenuLine *const line = find(id))
        return {id, only(propertyNames, propertiesOf(*line)), {}};
    if (id != Root)
        return {id, {}, {}};
    DBusMenuLayout root{Root, only(propertyNames, rootProperties()), {}};
    // A depth of -1 means all levels.
    if (depth != 0) {
        for (const MenuLine &line : m_lines)
            root.children.append(
                QDBusVariant(QVariant::fromValue(layoutOf(line.id, 0, propertyNames))));
    }
    return root;
}

bool DBusMenu::handle(int id, const QString &eventId)
{
    if (id == Root) {
        // A bar that says this also says when it has closed the menu.
        if (eventId == u"opened"_s)
            noteOpening(QDeadlineTimer(QDeadlineTimer::Forever));
        else if (eventId == u"closed"_s)
            noteClosing(caller());
        return true;
    }
    const MenuLine *const line = find(id);
    if (!line)
        return false;
    if (eventId == u"clicked"_s && line->isEnabled && !line->isSeparator)
        Q_EMIT chosen(id);
    return true;
}

/// The bar whose call is being answered.
QString DBusMenu::caller() const
{
    return calledFromDBus() ? message().service() : QString();
}

void DBusMenu::noteOpening(QDeadlineTimer until)
{
    const QString bar = caller();
    if (!m_openUntil.contains(bar) && !bar.isEmpty())
        m_bars.addWatchedService(bar);
    QDeadlineTimer &openUntil = m_openUntil[bar];
    openUntil = std::max(openUntil, until);
    Q_EMIT aboutToShow();
    if (m_isUntold)
        tellOfLayout();
}

void DBusMenu::noteClosing(const QString &bar)
{
    m_openUntil.remove(bar);
    m_bars.removeWatchedService(bar);
}

void DBusMenu::tellOfLayout()
{
    m_isUntold = false;
    Q_EMIT LayoutUpdated(++m_revision, Root);
}
