#pragma once

#include "app/menubar/itemicon.h"

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QObject>
#include <QPoint>

/// A status notifier item's tooltip as the bus carries it.
struct StatusNotifierToolTip {
    QString iconName;
    QList<IconPixmap> iconPixmap;
    QString title;
    /// Hosts may read markup in it.
    QString text;

    template<class Self>
    static auto members(Self &self)
    {
        return std::tie(self.iconName, self.iconPixmap, self.title, self.text);
    }
};

/// The item as desktops see it over the bus: icon, label, tooltip, activation, and where its menu
/// is. Its names on the bus are fixed by the protocol.
class StatusNotifierItem : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.StatusNotifierItem")
    Q_PROPERTY(QString Category READ category)
    Q_PROPERTY(QString Id READ id)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString Status READ status)
    Q_PROPERTY(uint WindowId READ windowId)
    Q_PROPERTY(QString IconThemePath READ empty)
    Q_PROPERTY(QDBusObjectPath Menu READ menu)
    Q_PROPERTY(bool ItemIsMenu READ itemIsMenu)
    Q_PROPERTY(QString IconName READ iconName)
    Q_PROPERTY(QList<IconPixmap> IconPixmap READ iconPixmap)
    Q_PROPERTY(QString IconAccessibleDesc READ description)
    Q_PROPERTY(QString OverlayIconName READ empty)
    Q_PROPERTY(QList<IconPixmap> OverlayIconPixmap READ noPixmap)
    Q_PROPERTY(QString AttentionIconName READ empty)
    Q_PROPERTY(QList<IconPixmap> AttentionIconPixmap READ noPixmap)
    Q_PROPERTY(QString AttentionMovieName READ empty)
    Q_PROPERTY(QString AttentionAccessibleDesc READ empty)
    Q_PROPERTY(StatusNotifierToolTip ToolTip READ toolTip)
    Q_PROPERTY(QString XAyatanaLabel READ label)
    Q_PROPERTY(QString XAyatanaLabelGuide READ labelGuide)
    Q_PROPERTY(uint XAyatanaOrderingIndex READ orderingIndex)

public:
    static QString path();
    static QString menuPath();

    /// Exports the item on @p connection, for as long as it lives.
    StatusNotifierItem(const QDBusConnection &connection, const ItemIcon &icon);
    ~StatusNotifierItem() override;

    void setIcon(const ItemIcon &icon);
    /// The clock, or empty.
    void setLabel(const QString &label);
    /// Whether the item has a tooltip; it would cover a panel that is open at the item. Without one
    /// the item has no title and no description either, which some bars show instead.
    void setHasToolTip(bool hasToolTip);

    QString category() const;
    QString id() const;
    QString title() const;
    /// What the tooltip says; Xfce shows it below, unless it is the same.
    QString description() const;
    QString status() const;
    uint windowId() const { return 0; }
    QDBusObjectPath menu() const { return QDBusObjectPath(menuPath()); }
    /// False: a click opens the panel and not the menu.
    bool itemIsMenu() const { return false; }
    QString iconName() const;
    QList<IconPixmap> iconPixmap() const;
    StatusNotifierToolTip toolTip() const;
    QString label() const { return m_label; }
    /// The widest usual label, by which hosts reserve room.
    QString labelGuide() const;
    uint orderingIndex() const { return 0; }

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(int x, int y);
    Q_SCRIPTABLE void SecondaryActivate(int x, int y);
    Q_SCRIPTABLE void ContextMenu(int x, int y);
    Q_SCRIPTABLE void Scroll(int delta, const QString &orientation);
    Q_SCRIPTABLE void XAyatanaSecondaryActivate(uint timestamp);
    Q_SCRIPTABLE void ProvideXdgActivationToken(const QString &token);

Q_SIGNALS:
    Q_SCRIPTABLE void NewTitle();
    Q_SCRIPTABLE void NewIcon();
    Q_SCRIPTABLE void NewAttentionIcon();
    Q_SCRIPTABLE void NewOverlayIcon();
    Q_SCRIPTABLE void NewToolTip();
    Q_SCRIPTABLE void NewMenu();
    Q_SCRIPTABLE void NewStatus(const QString &status);
    Q_SCRIPTABLE void XAyatanaNewLabel(const QString &label, const QString &guide);

    /// Somebody reads the icon, as everybody does who shows the item.
    void iconRead() const;
    /// The item has been clicked at @p position, in physical pixels; (0, 0) if the desktop does not
    /// say where.
    void activated(const QPoint &position);
    /// The click that follows may bring windows forward with @p token.
    void activationTokenProvided(const QString &token);

private:
    QString empty() const { return {}; }
    QList<IconPixmap> noPixmap() const { return {}; }

    QDBusConnection m_connection;
    ItemIcon m_icon;
    QString m_label;
    bool m_hasToolTip = true;
};
