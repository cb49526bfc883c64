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
        const StatusNotifierLink link(m_bus);
        QVERIFY(link.hasWatcher());
        QTRY_VERIFY(!link.hasWatcher());
        QVERIFY(!link.hasHost());
    }

    void shouldFindAWatcherThatIsThereAlready()
    {
        const Watcher watcher;
        StatusNotifierLink link(m_bus);
        QTRY_VERIFY(link.hasHost());
        QVERIFY(link.hasWatcher());
        QVERIFY(watcher.items().isEmpty());
        link.keepRegistered();
        QTRY_COMPARE(watcher.items(), QStringList{m_bus.baseService()});
    }

    void shouldFindAWatcherThatComesLater()
    {
        StatusNotifierLink link(m_bus);
        QTRY_VERIFY(!link.hasWatcher());
        link.keepRegistered();
        const Watcher watcher;
        QTRY_COMPARE(watcher.items(), QStringList{m_bus.baseService()});
        QVERIFY(link.hasHost());
    }

    void shouldWaitForAHostThatAnnouncesItselfAfterItsWatcher()
    {
        Watcher watcher(false);
        StatusNotifierLink link(m_bus);
        link.keepRegistered();
        QSignalSpy changes(&link, &StatusNotifierLink::changed);
        watcher.peer().ping(m_bus.baseService());
        QVERIFY(link.hasWatcher());
        QVERIFY(!link.hasHost());
        watcher.registerHost();
        QTRY_VERIFY(link.hasHost());
        QCOMPARE(changes.size(), 1);
        QTRY_COMPARE(watcher.items(), QStringList{m_bus.baseService()});
    }

    void shouldRegisterAgainAfterTheWatcherRestarts()
    {
        auto watcher = std::make_unique<Watcher>();
        StatusNotifierLink link(m_bus);
        link.keepRegistered();
        QTRY_COMPARE(watcher->items().size(), 1);
        watcher.reset();
        QTRY_VERIFY(!link.hasWatcher());
        QVERIFY(!link.hasHost());
        watcher = std::make_unique<Watcher>();
        QTRY_COMPARE(watcher->items(), QStringList{m_bus.baseService()});
        QVERIFY(link.hasHost());
    }

    void shouldLearnThatTheLastHostHasGone()
    {
        Watcher watcher;
        const StatusNotifierLink link(m_bus);
        QTRY_VERIFY(link.hasHost());
        watcher.unregisterHost();
        QTRY_VERIFY(!link.hasHost());
        QVERIFY(link.hasWatcher());
    }

    void shouldRegisterAgainWhenAnotherHostComes()
    {
        Watcher watcher;
        StatusNotifierLink link(m_bus);
        link.keepRegistered();
        QTRY_COMPARE(watcher.items().size(), 1);
        watcher.registerHost();
        QTRY_COMPARE(watcher.items().size(), 2);
    }

    void shouldRegisterAgainWhenItsItemIsDropped()
    {
        Watcher watcher;
        StatusNotifierLink link(m_bus, 1ms);
        link.keepRegistered();
        QTRY_COMPARE(watcher.items().size(), 1);
        Q_EMIT watcher.StatusNotifierItemUnregistered(m_bus.baseService() +
                                                      u"/StatusNotifierItem"_s);
        QTRY_COMPARE(watcher.items().size(), 2);
        Q_EMIT watcher.StatusNotifierItemUnregistered(m_bus.baseService());
        QTRY_COMPARE(watcher.items().size(), 3);
    }

    void shouldNotCareWhenAnotherItemIsDropped()
    {
        Watcher watcher;
        StatusNotifierLink link(m_bus, 0ms);
        link.keepRegistered();
        QTRY_COMPARE(watcher.items().size(), 1);
        Q_EMIT watcher.StatusNotifierItemUnregistered(m_bus.baseService() + u"1"_s);
        for (int i = 0; i < 3; ++i)
            watcher.peer().heard(m_bus.baseService());
        QCOMPARE(watcher.items().size(), 1);
    }

    void shouldTryAgainAfterARefusal()
    {
        Watcher watcher;
        watcher.refuse(true);
        StatusNotifierLink link(m_bus, 1ms);
        link.keepRegistered();
        QTRY_VERIFY(watcher.items().size() >= 3);
        watcher.refuse(false);
        const auto count = watcher.items().size();
        QTRY_COMPARE(watcher.items().size(), count + 1);
    }
};

QTEST_GUILESS_MAIN(TestStatusNotifierLink)
#include "tst_statusnotifierlink.moc"
