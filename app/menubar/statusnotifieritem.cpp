#include "app/menubar/statusnotifieritem.h"

#include <QDBusMetaType>

using namespace Qt::StringLiterals;

namespace
{
const QString Name = u"TULO Time Tracker"_s;
} // namespace

QString StatusNotifierItem::path()
{
    return u"/StatusNotifierItem"_s;
}

QString StatusNotifierItem::menuPath()
{
    return u"/MenuBar"_s;
}

StatusNotifierItem::StatusNotifierItem(const QDBusConnection &connection, const ItemIcon &icon)
    : m_connection(connection)
    , m_icon(icon)
{
    qDBusRegisterMetaType<IconPixmap>();
    qDBusRegisterMetaType<QList<IconPixmap>>();
    qDBusRegisterMetaType<StatusNotifierToolTip>();
    m_connection.registerObject(path(), this,
                                QDBusConnection::ExportAllProperties |
                                    QDBusConnection::ExportScriptableSlots |
                                    QDBusConnection::ExportScriptableSignals);
}

StatusNotifierItem::~StatusNotifierItem()
{
    m_connection.unregisterObject(path());
}

void StatusNotifierItem::setIcon(const ItemIcon &icon)
{
    if (m_icon == icon)
        return;
    m_icon = icon;
    Q_EMIT NewIcon();
}

void StatusNotifierItem::setLabel(const QString &label)
{
    if (m_label == label)
        return;
    m_label = label;
    Q_EMIT XAyatanaNewLabel(m_label, labelGuide());
    if (m_hasToolTip)
        Q_EMIT NewToolTip();
}

void StatusNotifierItem::setHasToolTip(bool hasToolTip)
{
    if (m_hasToolTip == hasToolTip)
        return;
    m_hasToolTip = hasToolTip;
    Q_EMIT NewTitle();
    Q_EMIT NewToolTip();
}

QString StatusNotifierItem::category() const
{
    return u"ApplicationStatus"_s;
}

QString StatusNotifierItem::id() const
{
    return u"dk.tulo.TimeTracker"_s;
}

QString StatusNotifierItem::title() const
{
    return m_hasToolTip ? Name : QString();
}

QString StatusNotifierItem::description() const
{
    if (!m_hasToolTip)
        return {};
    return m_label.isEmpty() ? Name : m_label + u" – "_s + Name;
}

QString StatusNotifierItem::status() const
{
    return u"Active"_s;
}

QString StatusNotifierItem::iconName() const
{
    Q_EMIT iconRead();
    return m_icon.name;
}

QList<IconPixmap> StatusNotifierItem::iconPixmap() const
{
    Q_EMIT iconRead();
    return m_icon.pixmaps;
}

StatusNotifierToolTip StatusNotifierItem::toolTip() const
{
    // All in the tooltip's title, as some bars show nothing else of it.
    return {QString(), {}, description(), {}};
}

QString StatusNotifierItem::labelGuide() const
{
    return u"00:00:00"_s;
}

void StatusNotifierItem::Activate(int x, int y)
{
    Q_EMIT activated(QPoint(x, y));
}

void StatusNotifierItem::SecondaryActivate(int x, int y)
{
    Q_EMIT activated(QPoint(x, y));
}

void StatusNotifierItem::ContextMenu(int x, int y)
{
    Q_EMIT activated(QPoint(x, y));
}

void StatusNotifierItem::Scroll(int, const QString &) {}

void StatusNotifierItem::XAyatanaSecondaryActivate(uint)
{
    Q_EMIT activated(QPoint());
}

void StatusNotifierItem::ProvideXdgActivationToken(const QString &token)
{
    Q_EMIT activationTokenProvided(token);
}
