#include "app/menubar/statusnotifieritem.h"
#include "tests/support/bus.h"

#include <QDBusArgument>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

/// The item as a desktop's bar speaks to it, over a real bus.
class TestStatusNotifierItem : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(const ItemIcon &icon = {u"name"_s, {{1, 1, "argb"_ba}}})
            : item(connection, icon)
        {
        }

        QVariant property(const QString &name)
        {
            return host.property(service, StatusNotifierItem::path(), interface, name);
        }
        QDBusMessage call(const QString &method, const QVariantList &arguments)
        {
            return host.call(service, StatusNotifierItem::path(), interface, method, arguments);
        }

        QDBusConnection connection = QDBusConnection::sessionBus();
        QString service = connection.baseService();
        QString interface = u"org.kde.StatusNotifierItem"_s;
        StatusNotifierItem item;
        Peer host{u"host"_s};
    };

private Q_SLOTS:
    void shouldShowItsPropertiesAsTheProtocolWantsThem()
    {
        // given
        Fixture f;

        // then
        QCOMPARE(f.property(u"Category"_s), u"ApplicationStatus"_s);
        QCOMPARE(f.property(u"Id"_s), u"dk.tulo.TimeTracker"_s);
        QCOMPARE(f.property(u"Title"_s), u"TULO Time Tracker"_s);
        QCOMPARE(f.property(u"Status"_s), u"Active"_s);
        QCOMPARE(f.property(u"ItemIsMenu"_s), false);
        QCOMPARE(f.property(u"Menu"_s).value<QDBusObjectPath>().path(), u"/MenuBar"_s);
        QCOMPARE(f.property(u"WindowId"_s), 0u);
        QCOMPARE(f.property(u"IconAccessibleDesc"_s), u"TULO Time Tracker"_s);
        QCOMPARE(f.property(u"XAyatanaLabel"_s), u""_s);
        QCOMPARE(f.property(u"XAyatanaLabelGuide"_s), u"00:00:00"_s);
        QCOMPARE(f.property(u"XAyatanaOrderingIndex"_s), 0u);
        for (const QString &name :
             {u"IconThemePath"_s, u"OverlayIconName"_s, u"AttentionIconName"_s,
              u"AttentionMovieName"_s, u"AttentionAccessibleDesc"_s})
            QCOMPARE(f.property(name), u""_s);
    }

    void shouldShowItsIcon()
    {
        // given
        Fixture f;

        // then
        QCOMPARE(f.property(u"IconName"_s), u"name"_s);
        const auto pixmaps =
            qdbus_cast<QList<IconPixmap>>(f.property(u"IconPixmap"_s).value<QDBusArgument>());
        QCOMPARE(pixmaps, QList<IconPixmap>({{1, 1, "argb"_ba}}));
    }

    void shouldTellOfANewIconOnce()
    {
        // given
        Fixture f;
        f.host.listenTo(f.service);

        // when
        f.item.setIcon({u"other"_s, {}});

        // then
        QCOMPARE(f.host.heard(f.service), QStringList{u"NewIcon"_s});
        QCOMPARE(f.property(u"IconName"_s), u"other"_s);

        // when it is the same
        f.item.setIcon({u"other"_s, {}});

        // then
        QCOMPARE(f.host.heard(f.service), QStringList());
    }

    void shouldTellOfEachNewLabelOnce()
    {
        // given
        Fixture f;
        f.host.listenTo(f.service);

        // when
        f.item.setLabel(u"01:02:05"_s);

        // then
        const QList<QDBusMessage> heard = f.host.heardMessages(f.service);
        QCOMPARE(heard.size(), 2);
        QCOMPARE(heard[0].member(), u"XAyatanaNewLabel"_s);
        QCOMPARE(heard[0].arguments(), QVariantList({u"01:02:05"_s, u"00:00:00"_s}));
        QCOMPARE(heard[1].member(), u"NewToolTip"_s);
        QCOMPARE(f.property(u"XAyatanaLabel"_s), u"01:02:05"_s);

        // when it is the same
        f.item.setLabel(u"01:02:05"_s);

        // then
        QCOMPARE(f.host.heard(f.service), QStringList());

        // when
        f.item.setLabel({});

        // then
        QCOMPARE(f.host.heard(f.service), QStringList({u"XAyatanaNewLabel"_s, u"NewToolTip"_s}));
        QCOMPARE(f.property(u"XAyatanaLabel"_s), u""_s);
    }

    void shouldShowTheClockInItsTooltip()
    {
        // given
        Fixture f;

        // when
        f.item.setLabel(u"01:02:05"_s);

        // then
        const auto tip =
            qdbus_cast<StatusNotifierToolTip>(f.property(u"ToolTip"_s).value<QDBusArgument>());
        QCOMPARE(tip.title, u"01:02:05 – TULO Time Tracker"_s);
        QCOMPARE(tip.text, u""_s);
    }

    void shouldHaveItsNameAloneInItsTooltipWithoutAClock()
    {
        Fixture f;
        const auto tip =
            qdbus_cast<StatusNotifierToolTip>(f.property(u"ToolTip"_s).value<QDBusArgument>());
        QCOMPARE(tip.title, u"TULO Time Tracker"_s);
    }

    void shouldHaveNoTooltipWhileItIsNotToHaveOne()
    {
        // given
        Fixture f;
        f.item.setLabel(u"01:02:05"_s);
        f.host.listenTo(f.service);

        QCOMPARE(f.property(u"IconAccessibleDesc"_s), u"01:02:05 – TULO Time Tracker"_s);

        // when
        f.item.setHasToolTip(false);

        // then
        QCOMPARE(f.host.heard(f.service), QStringList({u"NewTitle"_s, u"NewToolTip"_s}));
        QCOMPARE(f.property(u"Title"_s), u""_s);
        QCOMPARE(f.property(u"IconAccessibleDesc"_s), u""_s);
        const auto tip =
            qdbus_cast<StatusNotifierToolTip>(f.property(u"ToolTip"_s).value<QDBusArgument>());
        QCOMPARE(tip.title, u""_s);
        QCOMPARE(tip.text, u""_s);

        // when
        f.item.setLabel(u"01:02:06"_s);

        // then
        QCOMPARE(f.host.heard(f.service), QStringList{u"XAyatanaNewLabel"_s});

        // when
        f.item.setHasToolTip(true);

        // then
        QCOMPARE(f.host.heard(f.service), QStringList({u"NewTitle"_s, u"NewToolTip"_s}));
    }

    void shouldTellOfEveryKindOfClick()
    {
        // given
        Fixture f;
        QSignalSpy clicks(&f.item, &StatusNotifierItem::activated);

        for (const QString &method : {u"Activate"_s, u"SecondaryActivate"_s, u"ContextMenu"_s}) {
            // when
            f.call(method, {900, 14});

            // then
            QCOMPARE(clicks.size(), 1);
            QCOMPARE(clicks.takeFirst().at(0).toPoint(), QPoint(900, 14));
        }

        // when
        f.call(u"XAyatanaSecondaryActivate"_s, {0u});

        // then
        QCOMPARE(clicks.takeFirst().at(0).toPoint(), QPoint());

        // when
        f.call(u"Scroll"_s, {1, u"vertical"_s});

        // then
        QCOMPARE(clicks.size(), 0);
    }

    void shouldPassOnActivationTokens()
    {
        // given
        Fixture f;
        QSignalSpy tokens(&f.item, &StatusNotifierItem::activationTokenProvided);

        // when
        f.call(u"ProvideXdgActivationToken"_s, {u"token"_s});

        // then
        QCOMPARE(tokens.size(), 1);
        QCOMPARE(tokens.at(0).at(0), u"token"_s);
    }
};

QTEST_GUILESS_MAIN(TestStatusNotifierItem)
#include "tst_statusnotifieritem.moc"
