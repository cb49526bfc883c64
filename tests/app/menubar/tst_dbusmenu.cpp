#include "app/menubar/dbusmenu.h"
#include "tests/support/bus.h"

#include <QDBusArgument>
#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The menu as a desktop's bar speaks to it, over a real bus.
class TestDBusMenu : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(std::chrono::milliseconds sign = 1h)
            : menu(connection, path, sign)
        {
        }

        QDBusMessage call(const QString &method, const QVariantList &arguments)
        {
            return host.call(service, path, interface, method, arguments);
        }
        DBusMenuLayout layout(int parent = 0, int depth = -1, const QStringList &names = {})
        {
            const QDBusMessage reply = call(u"GetLayout"_s, {parent, depth, names});
            return qdbus_cast<DBusMenuLayout>(reply.arguments().value(1).value<QDBusArgument>());
        }
        uint revision()
        {
            return call(u"GetLayout"_s, {0, 0, QStringList()}).arguments()[0].toUInt();
        }
        static DBusMenuLayout child(const DBusMenuLayout &layout, int index)
        {
            return qdbus_cast<DBusMenuLayout>(
                layout.children.at(index).variant().value<QDBusArgument>());
        }
        bool aboutToShow() { return call(u"AboutToShow"_s, {0}).arguments().at(0).toBool(); }
        /// The items of the menu itself and a line that have to be read anew.
        QList<int> aboutToShowGroup()
        {
            const QDBusMessage reply =
                call(u"AboutToShowGroup"_s, {QVariant::fromValue(QList<int>{0, 1})});
            return qdbus_cast<QList<int>>(reply.arguments().at(0));
        }
        QDBusMessage event(int id, const QString &name)
        {
            return call(u"Event"_s, {id, name, QVariant::fromValue(QDBusVariant(QString())), 0u});
        }

        QDBusConnection connection = QDBusConnection::sessionBus();
        QString service = connection.baseService();
        QString path = u"/MenuBar"_s;
        QString interface = u"com.canonical.dbusmenu"_s;
        DBusMenu menu;
        Peer host{u"host"_s};
    };

    static MenuLine line(int id, const QString &label) { return {.id = id, .label = label}; }

private Q_SLOTS:
    void shouldGiveItsLayout()
    {
        // given
        Fixture f;
        MenuLine disabled = line(1, u"I dag 7.25 t"_s);
        disabled.isEnabled = false;
        MenuLine separator;
        separator.id = 2;
        separator.isSeparator = true;
        MenuLine checked = line(3, u"en_to"_s);
        checked.isChecked = true;
        f.menu.setLines({disabled, separator, checked});

        // when
        const DBusMenuLayout root = f.layout();

        // then
        QCOMPARE(root.id, 0);
        QCOMPARE(root.properties.value(u"children-display"_s), u"submenu"_s);
        QCOMPARE(root.children.size(), 3);
        const DBusMenuLayout first = f.child(root, 0);
        QCOMPARE(first.id, 1);
        QCOMPARE(first.properties.value(u"label"_s), u"I dag 7.25 t"_s);
        QCOMPARE(first.properties.value(u"enabled"_s), false);
        QCOMPARE(f.child(root, 1).properties, QVariantMap({{u"type"_s, u"separator"_s}}));
        const DBusMenuLayout third = f.child(root, 2);
        QCOMPARE(third.properties.value(u"label"_s), u"en__to"_s);
        QCOMPARE(third.properties.value(u"enabled"_s), true);
        QCOMPARE(third.properties.value(u"toggle-type"_s), u"checkmark"_s);
        QCOMPARE(third.properties.value(u"toggle-state"_s), 1);
        QVERIFY(third.children.isEmpty());
    }

    void shouldGiveNoMoreOfItsLayoutThanWasAskedFor()
    {
        // given
        Fixture f;
        f.menu.setLines({line(1, u"A"_s), line(2, u"B"_s)});

        // then
        QVERIFY(f.layout(0, 0).children.isEmpty());
        QCOMPARE(f.layout(0, 1).children.size(), 2);
        QCOMPARE(f.layout(2).id, 2);
        QCOMPARE(f.layout(2, -1, {u"label"_s}).properties, QVariantMap({{u"label"_s, u"B"_s}}));
        QCOMPARE(f.call(u"GetLayout"_s, {99, -1, QStringList()}).type(),
                 QDBusMessage::ErrorMessage);
    }

    void shouldGivePropertiesOneByOneAndInGroups()
    {
        // given
        Fixture f;
        f.menu.setLines({line(1, u"A"_s), line(2, u"B"_s)});
        const auto group = [&f](const QList<int> &ids) {
            const QDBusMessage reply = f.call(u"GetGroupProperties"_s,
                                              {QVariant::fromValue(ids), QStringList{u"label"_s}});
            return qdbus_cast<QList<DBusMenuProperties>>(
                reply.arguments().at(0).value<QDBusArgument>());
        };

        // when
        const QList<DBusMenuProperties> some = group({2, 99});

        // then
        QCOMPARE(some.size(), 1);
        QCOMPARE(some[0].id, 2);
        QCOMPARE(some[0].properties, QVariantMap({{u"label"_s, u"B"_s}}));
        QCOMPARE(group({}).size(), 3);

        // when
        const QDBusMessage one = f.call(u"GetProperty"_s, {1, u"label"_s});

        // then
        QCOMPARE(one.arguments().at(0).value<QDBusVariant>().variant(), u"A"_s);
        for (const QVariantList &unknown :
             {QVariantList{1, u"none"_s}, QVariantList{99, u"label"_s}})
            QCOMPARE(f.call(u"GetProperty"_s, unknown).type(), QDBusMessage::ErrorMessage);
    }

    void shouldTellOfANewLayoutWhenLinesComeOrGo()
    {
        // given
        Fixture f;
        f.menu.setLines({line(1, u"A"_s)});
        f.event(0, u"opened"_s);
        const uint revision = f.revision();
        f.host.listenTo(f.service);

        // when
        f.menu.setLines({line(1, u"A"_s), line(2, u"B"_s)});

        // then
        const QList<QDBusMessage> heard = f.host.heardMessages(f.service);
        QCOMPARE(heard.size(), 1);
        QCOMPARE(heard[0].member(), u"LayoutUpdated"_s);
        QCOMPARE(heard[0].arguments(), QVariantList({revision + 1, 0}));
        QCOMPARE(f.revision(), revision + 1);
    }

    void shouldTellOfThoseLinesThatDiffer()
    {
        // given
        Fixture f;
        f.menu.setLines({line(1, u"A"_s), line(2, u"B"_s)});
        f.event(0, u"opened"_s);
        f.host.listenTo(f.service);

        // when
        f.menu.setLines({line(1, u"A"_s), line(2, u"C"_s)});

        // then
        const QList<QDBusMessage> heard = f.host.heardMessages(f.service);
        QCOMPARE(heard.size(), 1);
        QCOMPARE(heard[0].member(), u"ItemsPropertiesUpdated"_s);
        const auto updated = qdbus_cast<QList<DBusMenuProperties>>(
            heard[0].arguments().at(0).value<QDBusArgument>());
        QCOMPARE(updated.size(), 1);
        QCOMPARE(updated[0].id, 2);
        QCOMPARE(updated[0].properties.value(u"label"_s), u"C"_s);

        // when
        f.menu.setLines({line(1, u"A"_s), line(2, u"C"_s)});

        // then
        QCOMPARE(f.host.heard(f.service), QStringList());
    }

    void shouldTellWhichLineWasChosen()
    {
        // given
        Fixture f;
        MenuLine disabled = line(1, u"A"_s);
        disabled.isEnabled = false;
        f.menu.setLines({disabled, line(2, u"B"_s)});
        QSignalSpy chosen(&f.menu, &DBusMenu::chosen);

        // when
        f.event(2, u"clicked"_s);

        // then
        QCOMPARE(chosen.size(), 1);
        QCOMPARE(chosen.takeFirst().at(0), 2);

        // when
        f.event(1, u"clicked"_s);
        f.event(2, u"hovered"_s);

        // then
        QCOMPARE(chosen.size(), 0);
        QCOMPARE(f.event(99, u"clicked"_s).type(), QDBusMessage::ErrorMessage);
    }

    void shouldTakeEventsInGroups()
    {
        // given
        Fixture f;
        f.menu.setLines({line(2, u"B"_s)});
        QSignalSpy chosen(&f.menu, &DBusMenu::chosen);
        const QDBusVariant none{QString()};

        // when
        const QDBusMessage reply =
            f.call(u"EventGroup"_s,
                   {QVariant::fromValue(QList<DBusMenuEvent>{{0, u"opened"_s, none, 0},
                                                             {2, u"clicked"_s, none, 0},
                                                             {99, u"clicked"_s, none, 0}})});

        // then
        QCOMPARE(qdbus_cast<QList<int>>(reply.arguments().at(0)), QList<int>{99});
        QCOMPARE(chosen.size(), 1);
        QVERIFY(f.menu.isOpen());
    }

    void shouldKnowWhetherItIsOpen()
    {
        // given
        Fixture f;
        QVERIFY(!f.menu.isOpen());

        // when
        f.event(0, u"opened"_s);

        // then
        QVERIFY(f.menu.isOpen());

        // when
        f.event(0, u"closed"_s);

        // then
        QVERIFY(!f.menu.isOpen());
    }

    void shouldTellOfLinesThatComeOrGoAlsoWhileItIsClosed()
    {
        // given
        Fixture f;
        f.menu.setLines({line(1, u"A"_s)});
        f.host.listenTo(f.service);

        // when
        f.menu.setLines({line(1, u"A"_s), line(2, u"B"_s)});

        // then a bar that sizes the menu before it says that it opens knows of them
        QCOMPARE(f.host.heard(f.service), QStringList{u"LayoutUpdated"_s});
        QVERIFY(!f.aboutToShow());
    }

    void shouldTellOfThoseLinesThatDifferOnlyOnceItOpens()
    {
        for (const QString &sign : {u"AboutToShow"_s, u"AboutToShowGroup"_s, u"opened"_s}) {
            // given
            Fixture f;
            f.menu.setLines({line(1, u"A"_s)});
            f.aboutToShow();
            f.event(0, u"closed"_s);
            f.host.listenTo(f.service);

            // when a bar has read what is gone by the time that it opens the menu
            f.menu.setLines({line(1, u"B"_s)});
            QCOMPARE(f.child(f.layout(), 0).properties.value(u"label"_s), u"B"_s);
            f.menu.setLines({line(1, u"A"_s)});

            // then
            QCOMPARE(f.host.heard(f.service), QStringList());

            // when
            if (sign == u"opened"_s)
                f.event(0, sign);
            else if (sign == u"AboutToShow"_s)
                QVERIFY(f.aboutToShow());
            else
                QCOMPARE(f.aboutToShowGroup(), QList<int>{0});

            // then
            QCOMPARE(f.host.heard(f.service), QStringList{u"LayoutUpdated"_s});
        }
    }

    void shouldTellOnlyOnceOfWhatHasDifferedBeforeAndAsItOpens()
    {
        // given
        Fixture f;
        f.menu.setLines({line(1, u"A"_s), line(2, u"A"_s)});
        connect(&f.menu, &DBusMenu::aboutToShow, &f.menu, [&f] {
            f.menu.setLines({line(1, u"B"_s), line(2, u"B"_s)});
        });
        f.host.listenTo(f.service);
        f.menu.setLines({line(1, u"B"_s), line(2, u"A"_s)});

        // when
        QVERIFY(f.aboutToShow());

        // then
        QCOMPARE(f.host.heard(f.service), QStringList{u"LayoutUpdated"_s});
    }

    void shouldCountAsOpenOnceItIsAboutToShow()
    {
        for (const bool isInGroup : {false, true}) {
            // given
            Fixture f;
            f.menu.setLines({line(1, u"A"_s)});

            // when
            if (isInGroup)
                f.aboutToShowGroup();
            else
                f.aboutToShow();

            // then
            QVERIFY(f.menu.isOpen());
            f.host.listenTo(f.service);
            f.menu.setLines({line(1, u"B"_s)});
            QCOMPARE(f.host.heard(f.service), QStringList{u"ItemsPropertiesUpdated"_s});

            // when
            f.event(0, u"closed"_s);

            // then
            QVERIFY(!f.menu.isOpen());
        }
    }

    void shouldCountAsOpenForSoLongAndNoLongerWhereNoBarSaysThatItIs()
    {
        // given
        Fixture f(0ms);

        // when
        f.aboutToShow();

        // then
        QVERIFY(!f.menu.isOpen());

        // when
        f.event(0, u"opened"_s);
        f.aboutToShow();

        // then it is open until the bar says otherwise
        QVERIFY(f.menu.isOpen());
    }

    void shouldBeOpenAsLongAsOneBarShowsIt()
    {
        // given
        Fixture f;
        Peer other(u"other"_s);
        f.aboutToShow();
        other.call(f.service, f.path, f.interface, u"AboutToShow"_s, {0});

        // when
        f.event(0, u"closed"_s);

        // then
        QVERIFY(f.menu.isOpen());
    }

    void shouldBeClosedWhenTheBarThatShowedItIsGone()
    {
        // given
        Fixture f;
        auto other = std::make_unique<Peer>(u"other"_s);
        other->call(f.service, f.path, f.interface, u"Event"_s,
                    {0, u"opened"_s, QVariant::fromValue(QDBusVariant(QString())), 0u});
        QVERIFY(f.menu.isOpen());

        // when
        other.reset();

        // then
        QTRY_VERIFY(!f.menu.isOpen());
    }

    void shouldBeBroughtUpToDateBeforeItIsShown()
    {
        // given
        Fixture f;
        f.menu.setLines({line(1, u"A"_s)});
        f.aboutToShow();
        QVERIFY(!f.aboutToShow());

        // when somebody brings it up to date
        connect(&f.menu, &DBusMenu::aboutToShow, this, [&f] {
            f.menu.setLines({line(1, u"A"_s), line(2, u"B"_s)});
        });

        // then
        QVERIFY(f.aboutToShow());
        QVERIFY(!f.aboutToShow());

        // when
        const QDBusMessage group =
            f.call(u"AboutToShowGroup"_s, {QVariant::fromValue(QList<int>{0, 1, 99})});

        // then
        QCOMPARE(qdbus_cast<QList<int>>(group.arguments().at(0)), QList<int>());
        QCOMPARE(qdbus_cast<QList<int>>(group.arguments().at(1)), QList<int>{99});
    }

    void shouldSpeakTheProtocolsThirdVersion()
    {
        // given
        Fixture f;

        // then
        QCOMPARE(f.host.property(f.service, f.path, f.interface, u"Version"_s), 3u);
        QCOMPARE(f.host.property(f.service, f.path, f.interface, u"Status"_s), u"normal"_s);
        QCOMPARE(f.host.property(f.service, f.path, f.interface, u"TextDirection"_s), u"ltr"_s);
    }
};

QTEST_GUILESS_MAIN(TestDBusMenu)
#include "tst_dbusmenu.moc"
