#include "app/menubar/statusnotifierlink.h"
#include "tests/support/bus.h"

#include <QSignalSpy>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// How the item gets, and stays, registered.
class TestStatusNotifierLink : public QObject
{
    Q_OBJECT

private:
    QDBusConnection m_bus = QDBusConnection::sessionBus();

private Q_SLOTS:
    void shouldLearnThatThereIsNoWatcher()
    {
        // given
        const StatusNotifierLink link(m_bus);

        // then
        QVERIFY(link.hasWatcher());
        QTRY_VERIFY(!link.hasWatcher());
        QVERIFY(!link.hasHost());
    }

    void shouldFindAWatcherThatIsThereAlready()
    {
        // given
        const Watcher watcher;

        // when
        StatusNotifierLink link(m_bus);

        // then
        QTRY_VERIFY(link.hasHost());
        QVERIFY(link.hasWatcher());
        QVERIFY(watcher.items().isEmpty());

        // when
        link.keepRegistered();

        // then
        QTRY_COMPARE(watcher.items(), QStringList{m_bus.baseService()});
    }

    void shouldFindAWatcherThatComesLater()
    {
        // given
        StatusNotifierLink link(m_bus);
        QTRY_VERIFY(!link.hasWatcher());
        link.keepRegistered();

        // when
        const Watcher watcher;

        // then
        QTRY_COMPARE(watcher.items(), QStringList{m_bus.baseService()});
        QVERIFY(link.hasHost());
    }

    void shouldWaitForAHostThatAnnouncesItselfAfterItsWatcher()
    {
        // given
        Watcher watcher(false);
        StatusNotifierLink link(m_bus);
        link.keepRegistered();
        QSignalSpy changes(&link, &StatusNotifierLink::changed);

        // when the watcher has answered
        watcher.peer().ping(m_bus.baseService());

        // then
        QVERIFY(link.hasWatcher());
        QVERIFY(!link.hasHost());

        // when
        watcher.registerHost();

        // then
        QTRY_VERIFY(link.hasHost());
        QCOMPARE(changes.size(), 1);
        QTRY_COMPARE(watcher.items(), QStringList{m_bus.baseService()});
    }

    void shouldRegisterAgainAfterTheWatcherRestarts()
    {
        // given
        auto watcher = std::make_unique<Watcher>();
        StatusNotifierLink link(m_bus);
        link.keepRegistered();
        QTRY_COMPARE(watcher->items().size(), 1);

        // when
        watcher.reset();

        // then
        QTRY_VERIFY(!link.hasWatcher());
        QVERIFY(!link.hasHost());

        // when
        watcher = std::make_unique<Watcher>();

        // then
        QTRY_COMPARE(watcher->items(), QStringList{m_bus.baseService()});
        QVERIFY(link.hasHost());
    }

    void shouldLearnThatTheLastHostHasGone()
    {
        // given
        Watcher watcher;
        const StatusNotifierLink link(m_bus);
        QTRY_VERIFY(link.hasHost());

        // when
        watcher.unregisterHost();

        // then
        QTRY_VERIFY(!link.hasHost());
        QVERIFY(link.hasWatcher());
    }

    void shouldRegisterAgainWhenAnotherHostComes()
    {
        // given
        Watcher watcher;
        StatusNotifierLink link(m_bus);
        link.keepRegistered();
        QTRY_COMPARE(watcher.items().size(), 1);

        // when
        watcher.registerHost();

        // then
        QTRY_COMPARE(watcher.items().size(), 2);
    }

    void shouldRegisterAgainWhenItsItemIsDropped()
    {
        // given
        Watcher watcher;
        StatusNotifierLink link(m_bus, 1ms);
        link.keepRegistered();
        QTRY_COMPARE(watcher.items().size(), 1);

        // when
        Q_EMIT watcher.StatusNotifierItemUnregistered(m_bus.baseService() +
                                                      u"/StatusNotifierItem"_s);

        // then
        QTRY_COMPARE(watcher.items().size(), 2);

        // when
        Q_EMIT watcher.StatusNotifierItemUnregistered(m_bus.baseService());

        // then
        QTRY_COMPARE(watcher.items().size(), 3);
    }

    void shouldNotCareWhenAnotherItemIsDropped()
    {
        // given
        Watcher watcher;
        StatusNotifierLink link(m_bus, 0ms);
        link.keepRegistered();
        QTRY_COMPARE(watcher.items().size(), 1);

        // when
        Q_EMIT watcher.StatusNotifierItemUnregistered(m_bus.baseService() + u"1"_s);
        for (int i = 0; i < 3; ++i)
            watcher.peer().heard(m_bus.baseService());

        // then
        QCOMPARE(watcher.items().size(), 1);
    }

    void shouldKnowTheWatchersProcessByTheTimeThatItKnowsOfTheHost()
    {
        for (const bool isHostLater : {false, true}) {
            // given
            Watcher watcher(!isHostLater);
            const ProcessName name("a-bar");
            const StatusNotifierLink link(m_bus);
            QString process;
            connect(&link, &StatusNotifierLink::changed, this, [&] {
                if (link.hasHost())
                    process = link.process();
            });
            watcher.peer().ping(m_bus.baseService());

            // when
            if (isHostLater)
                watcher.registerHost();

            // then
            QTRY_VERIFY(link.hasHost());
            QCOMPARE(process, u"a-bar"_s);
        }
    }

    void shouldTryAgainAfterARefusal()
    {
        // given
        Watcher watcher;
        watcher.refuse(true);
        StatusNotifierLink link(m_bus, 1ms);

        // when
        link.keepRegistered();

        // then
        QTRY_VERIFY(watcher.items().size() >= 3);

        // when
        watcher.refuse(false);
        const auto count = watcher.items().size();

        // then
        QTRY_COMPARE(watcher.items().size(), count + 1);
    }
};

QTEST_GUILESS_MAIN(TestStatusNotifierLink)
#include "tst_statusnotifierlink.moc"
