#include "../../support/teststore.h"
#include "views/day/headerviewmodel.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class TestHeaderViewModel : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        Fixture()
        {
            QFont font;
            font.setPixelSize(16);
            header.setProperty("dateFont", font);
            header.setProperty("dateRoom", 1000);
        }

        FakeClock clock;
        TestStore store{clock, {1h, 1h}};
        TimerManager timer{clock, 1h};
        DayTasks tasks{store.context(), clock.calendar().dayInterval(clock.now())};
        AllTasks all{store.context()};
        HeaderViewModel header{timer, tasks};
    };

private Q_SLOTS:
    void shouldShowTheDateInDanish_data()
    {
        QTest::addColumn<QString>("day");
        QTest::addColumn<QString>("text");
        QTest::newRow("a day") << u"2025-03-03T00:00:00"_s << u"mandag 3. marts 2025"_s;
        QTest::newRow("the first") << u"2025-06-01T00:00:00"_s << u"søndag 1. juni 2025"_s;
        QTest::newRow("a long one") << u"2026-09-30T00:00:00"_s << u"onsdag 30. september 2026"_s;
    }
    void shouldShowTheDateInDanish()
    {
        QFETCH(QString, day);

        // given
        QLocale::setDefault(QLocale(QLocale::English));
        Fixture f;

        // when
        f.timer.navigateToDate(f.clock.at(day));

        // then
        QTEST(f.header.dateText(), "text");
    }

    void shouldShowTheDateThatTheSelectedDayHasInANewZone()
    {
        // given
        Fixture f;
        QCOMPARE(f.header.dateText(), u"fredag 20. november 2026"_s);
        QSignalSpy changes(&f.header, &HeaderViewModel::dateChanged);

        // when
        f.clock.travelTo("America/New_York");

        // then
        QCOMPARE(f.header.dateText(), u"torsdag 19. november 2026"_s);
        QCOMPARE(changes.count(), 1);

        // when
        f.clock.travelTo("Asia/Tokyo");

        // then
        QCOMPARE(f.header.dateText(), u"fredag 20. november 2026"_s);
    }

    void shouldHaveNothingToStartOnADayWithoutTasks()
    {
        // given
        Fixture f;

        // then
        QVERIFY(!f.header.isButtonEnabled());
        QCOMPARE(f.header.helpText(), u"Ingen opgaver"_s);
    }

    void shouldOfferToStartTheFirstTask()
    {
        // given
        Fixture f;
        f.store.insertTask(u"a"_s);
        QSignalSpy start(&f.header, &HeaderViewModel::startFirst);
        QSignalSpy stop(&f.header, &HeaderViewModel::stopAll);

        // then
        QVERIFY(f.header.isButtonEnabled());
        QCOMPARE(f.header.helpText(), u"Start første opgave"_s);

        // when
        f.header.startOrPause();

        // then
        QCOMPARE(start.count(), 1);
        QCOMPARE(stop.count(), 0);
    }

    void shouldOfferToPauseATaskOfAnotherDayOnADayWithoutTasks()
    {
        // given
        Fixture f;
        Task *const yesterday =
            f.store.insert<Task>(u"i går"_s, f.clock.now() - 86400, std::nullopt);
        f.timer.startTask(yesterday, f.all, f.store.context());
        QSignalSpy start(&f.header, &HeaderViewModel::startFirst);
        QSignalSpy stop(&f.header, &HeaderViewModel::stopAll);

        // then
        QVERIFY(f.header.isButtonEnabled());
        QCOMPARE(f.header.helpText(), u"Sæt aktiv opgave på pause"_s);

        // when
        f.header.startOrPause();

        // then
        QCOMPARE(start.count(), 0);
        QCOMPARE(stop.count(), 1);
    }
};

QTEST_MAIN(TestHeaderViewModel)
#include "tst_headerviewmodel.moc"
