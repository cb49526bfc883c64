#include "app/instance/starttokens.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestStartTokens : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldReadTheTokensAndLeaveThem()
    {
        // given
        qputenv("XDG_ACTIVATION_TOKEN", "token");
        qputenv("DESKTOP_STARTUP_ID", "id");

        // when
        const StartTokens tokens = StartTokens::fromEnvironment();

        // then
        QCOMPARE(tokens.activationToken, u"token"_s);
        QCOMPARE(tokens.startupId, u"id"_s);
        QCOMPARE(qgetenv("XDG_ACTIVATION_TOKEN"), "token");
        QCOMPARE(qgetenv("DESKTOP_STARTUP_ID"), "id");
    }
};

QTEST_APPLESS_MAIN(TestStartTokens)
#include "tst_starttokens.moc"
