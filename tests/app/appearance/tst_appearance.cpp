#include "app/appearance/appearance.h"
#include "tests/support/bus.h"
#include "views/controls/theme.h"

#include <QGuiApplication>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

namespace
{

bool isDark()
{
    return isDarkPalette(QGuiApplication::palette());
}

} // namespace

/// The desktop's settings portal.
class Portal : public QObject, protected QDBusContext
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.portal.Settings")

public:
    explicit Portal(const QVariant &colorScheme)
        : m_colorScheme(colorScheme)
    {
        m_peer.connection().registerObject(u"/org/freedesktop/portal/desktop"_s, this,
                                           QDBusConnection::ExportScriptableContents);
        if (!m_peer.connection().registerService(u"org.freedesktop.portal.Desktop"_s))
            QTest::qFail("there is a portal already", __FILE__, __LINE__);
    }

    void setColorScheme(uint scheme)
    {
        m_colorScheme = scheme;
        change(u"org.freedesktop.appearance"_s, u"color-scheme"_s, scheme);
    }
    void change(const QString &group, const QString &key, uint value)
    {
        Q_EMIT SettingChanged(group, key, QDBusVariant(value));
    }
    int questions() const { return m_questions; }
    /// Waits until the program has what was sent to it.
    void settle() { m_peer.ping(QDBusConnection::sessionBus().baseService()); }

public Q_SLOTS:
    Q_SCRIPTABLE QDBusVariant Read(const QString &group, const QString &key)
    {
        ++m_questions;
        if (group != "org.freedesktop.appearance"_L1 || key != "color-scheme"_L1 ||
            !m_colorScheme.isValid())
            sendErrorReply(u"org.freedesktop.portal.Error.NotFound"_s);
        // As portals do, in a variant within the answer's.
        return QDBusVariant(QVariant::fromValue(QDBusVariant(m_colorScheme)));
    }

Q_SIGNALS:
    Q_SCRIPTABLE void SettingChanged(const QString &group, const QString &key,
                                     const QDBusVariant &value);

private:
    Peer m_peer{u"portal"_s};
    QVariant m_colorScheme;
    int m_questions = 0;
};

class TestAppearance : public QObject
{
    Q_OBJECT

private:
    QDBusConnection m_bus = QDBusConnection::sessionBus();

private Q_SLOTS:
    void init()
    {
        QGuiApplication::setPalette(QPalette());
        QVERIFY(!isDark());
    }

    void shouldBecomeDarkWhereTheDesktopIs()
    {
        // given
        const Portal portal(1U);

        // when
        const Appearance appearance(m_bus);

        // then
        QTRY_VERIFY(isDark());
    }

    void shouldStayLightOtherwise_data()
    {
        QTest::addColumn<QVariant>("scheme");
        QTest::newRow("no preference") << QVariant(0U);
        QTest::newRow("light") << QVariant(2U);
        QTest::newRow("unknown value") << QVariant(7U);
        QTest::newRow("another type") << QVariant(u"dark"_s);
        QTest::newRow("no such setting") << QVariant();
    }

    void shouldStayLightOtherwise()
    {
        QFETCH(QVariant, scheme);

        // given
        Portal portal(scheme);
        const QPalette before = QGuiApplication::palette();

        // when
        const Appearance appearance(m_bus);
        QTRY_COMPARE(portal.questions(), 1);
        portal.settle();

        // then
        QCOMPARE(QGuiApplication::palette(), before);
    }

    void shouldFollowWhileRunning()
    {
        // given
        Portal portal(0U);
        const QPalette platforms = QGuiApplication::palette();
        const Appearance appearance(m_bus);
        QTRY_COMPARE(portal.questions(), 1);

        for (const uint light : {2U, 0U}) {
            // when
            portal.setColorScheme(1);

            // then
            QTRY_VERIFY(isDark());

            // when
            portal.setColorScheme(light);

            // then
            QTRY_COMPARE(QGuiApplication::palette(), platforms);
        }
    }

    void shouldBeHeardByTheTheme()
    {
        // given
        Portal portal(0U);
        const Theme theme;
        const Appearance appearance(m_bus);
        QTRY_COMPARE(portal.questions(), 1);

        // when
        portal.setColorScheme(1);

        // then
        QTRY_VERIFY(theme.isDark());

        // when
        portal.setColorScheme(0);

        // then
        QTRY_VERIFY(!theme.isDark());
    }

    void shouldIgnoreOtherSettings()
    {
        // given
        Portal portal(0U);
        const Appearance appearance(m_bus);
        QTRY_COMPARE(portal.questions(), 1);

        // when
        portal.change(u"org.freedesktop.appearance"_s, u"contrast"_s, 1);
        portal.change(u"org.gnome.desktop.interface"_s, u"color-scheme"_s, 1);
        portal.settle();

        // then
        QVERIFY(!isDark());
    }

    void shouldFindAPortalThatComesLater()
    {
        // given
        const Appearance appearance(m_bus);
        QVERIFY(!isDark());

        // when
        const Portal portal(1U);

        // then
        QTRY_VERIFY(isDark());
    }

    void shouldKeepWhatItKnowsWhenThePortalGoes()
    {
        // given
        auto portal = std::make_unique<Portal>(1U);
        const Appearance appearance(m_bus);
        QTRY_VERIFY(isDark());
        QDBusServiceWatcher watcher(u"org.freedesktop.portal.Desktop"_s, m_bus);
        QSignalSpy gone(&watcher, &QDBusServiceWatcher::serviceUnregistered);

        // when
        portal.reset();
        QTRY_COMPARE(gone.size(), 1);

        // then
        QVERIFY(isDark());

        // when
        const Portal another(0U);

        // then
        QTRY_VERIFY(!isDark());
    }

    void shouldLeaveADarkPaletteOfThePlatformAsItIs_data()
    {
        QTest::addColumn<uint>("scheme");
        QTest::newRow("no preference") << 0U;
        QTest::newRow("dark") << 1U;
        QTest::newRow("light") << 2U;
    }

    void shouldLeaveADarkPaletteOfThePlatformAsItIs()
    {
        QFETCH(uint, scheme);

        // given
        QGuiApplication::setPalette(QPalette(QColor(0x50, 0x40, 0x40), QColor(0x30, 0x20, 0x20)));
        const QPalette before = QGuiApplication::palette();
        QVERIFY(isDark());
        Portal portal(scheme);

        // when
        const Appearance appearance(m_bus);
        QTRY_COMPARE(portal.questions(), 1);
        portal.settle();

        // then
        QCOMPARE(QGuiApplication::palette(), before);

        // when
        portal.setColorScheme(scheme);
        portal.settle();

        // then
        QCOMPARE(QGuiApplication::palette(), before);
    }

    void shouldBecomeLightWithTheDesktopWhereThePlatformsPaletteRemainsDark()
    {
        for (const uint light : {2U, 0U}) {
            // given
            QGuiApplication::setPalette(
                QPalette(QColor(0x50, 0x40, 0x40), QColor(0x30, 0x20, 0x20)));
            Portal portal(1U);
            const Appearance appearance(m_bus);
            QTRY_COMPARE(portal.questions(), 1);
            portal.settle();
            QVERIFY(isDark());

            // when
            portal.setColorScheme(light);

            // then
            QTRY_VERIFY(!isDark());
            QCOMPARE(QGuiApplication::palette().color(QPalette::Window),
                     lightPalette().color(QPalette::Window));
        }
    }

    void shouldBecomeDarkWhenThePlatformsPaletteTurnsLight()
    {
        // given
        QGuiApplication::setPalette(QPalette(QColor(0x50, 0x40, 0x40), QColor(0x30, 0x20, 0x20)));
        Portal portal(1U);
        const Appearance appearance(m_bus);
        QTRY_COMPARE(portal.questions(), 1);
        portal.settle();

        // when
        QGuiApplication::setPalette(QPalette());

        // then
        QTRY_VERIFY(isDark());
        QCOMPARE(QGuiApplication::palette().color(QPalette::Window),
                 darkPalette().color(QPalette::Window));
    }

    void shouldDoWithoutABus()
    {
        // given
        const Appearance appearance(QDBusConnection(u"none"_s));

        // then
        QVERIFY(!isDark());
    }
};

QTEST_MAIN(TestAppearance)
#include "tst_appearance.moc"
