#include "app/menubar/panelplacement.h"

#include <QTest>

/// Where the panel goes.
class TestPanelPlacement : public QObject
{
    Q_OBJECT

private:
    static constexpr QSize panel{240, 200};

    /// A screen of 1000 × 800 with a desktop's bar of 30.
    static PanelScreen withTopBar() { return {{0, 0, 1000, 800}, {0, 30, 1000, 770}, 1}; }
    static PanelScreen withBottomBar() { return {{0, 0, 1000, 800}, {0, 0, 1000, 770}, 1}; }

    static QPoint place(const PanelClick &click, const QList<PanelScreen> &screens)
    {
        return panelPosition(panel, panelAnchor(click, screens), screens);
    }

private Q_SLOTS:
    void shouldHangBelowATopPanelCentredUnderTheItem()
    {
        QCOMPARE(place({{}, QPoint(500, 15)}, {withTopBar()}), QPoint(500 - 120, 30));
    }

    void shouldStandAboveABottomPanel()
    {
        QCOMPARE(place({{}, QPoint(500, 785)}, {withBottomBar()}), QPoint(500 - 120, 770 - 200));
    }

    void shouldStayOnTheScreenInEachCorner()
    {
        QCOMPARE(place({{}, QPoint(0, 15)}, {withTopBar()}), QPoint(0, 30));
        QCOMPARE(place({{}, QPoint(999, 15)}, {withTopBar()}), QPoint(760, 30));
        QCOMPARE(place({{}, QPoint(0, 799)}, {withBottomBar()}), QPoint(0, 570));
        QCOMPARE(place({{}, QPoint(999, 799)}, {withBottomBar()}), QPoint(760, 570));
    }

    void shouldStandBesideAPanelAtTheLeftOrRightEdge()
    {
        // given
        const PanelScreen left{{0, 0, 1000, 800}, {40, 0, 960, 800}, 1};
        const PanelScreen right{{0, 0, 1000, 800}, {0, 0, 960, 800}, 1};

        // then
        QCOMPARE(place({{}, QPoint(20, 100)}, {left}), QPoint(40, 101));
        QCOMPARE(place({{}, QPoint(980, 700)}, {right}), QPoint(720, 500));
    }

    void shouldBelieveAPointerInADesktopsPanelMoreThanWhatIsReported()
    {
        QCOMPARE(place({{15, 14}, QPoint(900, 15)}, {withTopBar()}), QPoint(760, 30));
    }

    void shouldBelieveAPointerAtAnEdgeWhereBarsTakeNoRoom()
    {
        const PanelScreen screen{{0, 0, 1000, 800}, {0, 0, 1000, 800}, 1};
        QCOMPARE(place({{15, 14}, QPoint(500, 20)}, {screen}), QPoint(380, 21));
        QCOMPARE(place({{15, 14}, QPoint(500, 780)}, {screen}), QPoint(380, 580));
    }

    void shouldBelieveWhatIsReportedWhileThePointerIsElsewhere()
    {
        QCOMPARE(place({{500, 15}, QPoint(300, 400)}, {withTopBar()}), QPoint(380, 30));
        QCOMPARE(place({{500, 15}, std::nullopt}, {withTopBar()}), QPoint(380, 30));
    }

    void shouldGoToTheTopRightCornerWhenNothingIsKnown()
    {
        QCOMPARE(place({{0, 0}, std::nullopt}, {withTopBar()}), QPoint(760, 31));
        QCOMPARE(place({{0, 0}, QPoint(300, 400)}, {withTopBar()}), QPoint(760, 31));
        QCOMPARE(place({{5000, 5000}, QPoint(300, 400)}, {withTopBar()}), QPoint(760, 31));
    }

    void shouldTakeWhatIsReportedForPhysicalPixels()
    {
        const PanelScreen screen{{0, 0, 1000, 800}, {0, 30, 1000, 770}, 2};
        QCOMPARE(place({{1000, 30}, std::nullopt}, {screen}), QPoint(380, 30));
    }

    void shouldGoToTheScreenThatWasClicked()
    {
        // given a second screen that is scaled; its corner keeps its physical place
        const QList<PanelScreen> screens{withTopBar(),
                                         {{1000, 0, 960, 540}, {1000, 0, 960, 510}, 2}};

        // then
        QCOMPARE(place({{}, QPoint(1500, 525)}, screens), QPoint(1500 - 120, 510 - 200));
        QCOMPARE(place({{2000, 1050}, std::nullopt}, screens), QPoint(1500 - 120, 510 - 200));
        QCOMPARE(place({{}, QPoint(500, 15)}, screens), QPoint(380, 30));
    }

    void shouldWorkLeftOfAndAboveTheFirstScreen()
    {
        // given
        const QList<PanelScreen> screens{withTopBar(),
                                         {{-1280, -200, 1280, 1024}, {-1280, -170, 1280, 994}, 1}};

        // then
        QCOMPARE(place({{}, QPoint(-100, -190)}, screens), QPoint(-240, -170));
    }

    void shouldShowThePanelsBeginningWhereItDoesNotFit()
    {
        const PanelScreen screen{{0, 0, 200, 100}, {0, 10, 200, 90}, 1};
        QCOMPARE(place({{}, QPoint(100, 5)}, {screen}), QPoint(0, 10));
        QCOMPARE(place({{}, QPoint(100, 99)}, {screen}), QPoint(0, 10));
    }

    void shouldKeepClearOfAnItemThatIsAWindow()
    {
        const QList<PanelScreen> screens{withTopBar()};
        QCOMPARE(panelPosition(panel, {400, 100, 120, 28}, screens), QPoint(459 - 120, 128));
        QCOMPARE(panelPosition(panel, {400, 600, 120, 28}, screens), QPoint(459 - 120, 400));
    }
};

QTEST_GUILESS_MAIN(TestPanelPlacement)
#include "tst_panelplacement.moc"
