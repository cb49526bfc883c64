#include "app/timetrackerapp.h"

#include "model/livequery.h"
#include "tests/support/qmltest.h"
#include "tests/support/standarderror.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QQmlEngine>
#include <QTemporaryDir>
#include <QTest>

#include <sys/resource.h>

#include <csignal>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The application object: what the program does at its end.
class TestTimeTrackerApp : public QObject
{
    Q_OBJECT

private:
    /// An application with an open window that writes nothing by itself.
    struct Fixture {
        Fixture()
        {
            qputenv("XDG_DATA_HOME", QFile::encodeName(home.path()));
            engine.addImportPath(u"qrc:/qt/qml"_s);
            app = std::make_unique<TimeTrackerApp>(engine, QDBusConnection(u"none"_s),
                                                   SaveDelays{1h, 1h});
            app->openMainWindow();
        }

        bool addTask() const
        {
            for (QWindow *window : QGuiApplication::topLevelWindows()) {
                if (window->title() == u"TULO Time Tracker"_s) {
                    window->requestActivate();
                    if (!QTest::qWaitForWindowActive(window))
                        return false;
                    QTest::keyClick(window, Qt::Key_Return, Qt::ControlModifier);
                    return true;
                }
            }
            return false;
        }
        /// The number of tasks on the disk, by a copy of the files: the store itself is held.
        qsizetype storedTasks() const
        {
            const QFileInfo store(ModelContainer::defaultPath());
            const QTemporaryDir copy;
            for (const QFileInfo &file : store.dir().entryInfoList(QDir::Files))
                QFile::copy(file.filePath(), copy.filePath(file.fileName()));
            const SystemClock clock;
            ModelContainer container(copy.filePath(store.fileName()), clock);
            return LiveQuery<Task>(container.mainContext(), allRecords(), QueryOrder::Store)
                .results()
                .size();
        }

        qmltest::WarningsAreFailures guard;
        QTemporaryDir home;
        QQmlEngine engine;
        std::unique_ptr<TimeTrackerApp> app;
    };

private Q_SLOTS:
    void shouldSaveWhenItQuits()
    {
        // given
        const Fixture f;
        QVERIFY(f.addTask());
        QCOMPARE(f.storedTasks(), 0);
        // What comes after it in the same signal sees what it has done.
        qsizetype stored = -1;
        connect(qApp, &QCoreApplication::aboutToQuit, this, [&] { stored = f.storedTasks(); });

        // when
        QMetaObject::invokeMethod(qApp, &QCoreApplication::quit, Qt::QueuedConnection);
        QCoreApplication::exec();

        // then
        QCOMPARE(stored, 1);
    }

    void shouldSaveWhenTheSessionEnds()
    {
        // given
        const Fixture f;
        QVERIFY(f.addTask());
        QCOMPARE(f.storedTasks(), 0);
        // Only a session has a manager; here is another object, and nobody looks at it.
        QObject manager;

        // when
        QVERIFY(QMetaObject::invokeMethod(qApp, "commitDataRequest", Qt::DirectConnection,
                                          QGenericArgument("QSessionManager&", &manager)));

        // then
        QCOMPARE(f.storedTasks(), 1);
    }

    void shouldNameWhatCannotBeSavedWhenTheSessionEnds()
    {
        // given a task that there is no room for
        const Fixture f;
        QVERIFY(f.addTask());
        struct rlimit before {
        };
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        // A file of the store takes more than this, and what is said less.
        const rlimit small{4096, before.rlim_max};
        ::setrlimit(RLIMIT_FSIZE, &small);

        // when the session ends, and then the program
        QObject manager;
        bool isAsked = false;
        const QString saidFirst = saidBy([&] {
            isAsked = QMetaObject::invokeMethod(qApp, "commitDataRequest", Qt::DirectConnection,
                                                QGenericArgument("QSessionManager&", &manager));
        });
        bool isSaved = true;
        const QString saidThen = saidBy([&] { isSaved = f.app->finish(); });
        ::setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);

        // then the task is named once
        QVERIFY(isAsked);
        QVERIFY(!isSaved);
        QVERIFY2(saidFirst.contains("  new: task \"\" of "_L1), qPrintable(saidFirst));
        QCOMPARE(saidThen, QString());

        // when there is room again
        const bool isSavedThen = f.app->finish();

        // then
        QVERIFY(isSavedThen);
    }
};

QTEST_MAIN(TestTimeTrackerApp)
#include "tst_timetrackerapp.moc"
