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

    /// On a screen of 1000 × 800.
    static void shouldStandAt(const QPoint &point, const PanelEdges &expected)
    {
        const PanelEdges found = panelEdges(panel, QRect(point, QSize(1, 1)),
                                            {{{0, 0, 1000, 800}, {0, 0, 1000, 800}, 1}});
        QCOMPARE(found.screen, expected.screen);
        QCOMPARE(found.edges, expected.edges);
        QCOMPARE(found.margins, expected.margins);
        QCOMPARE(found.isBesideBars, expected.isBesideBars);
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

    void shouldStandAtTheEdgeThatHoldsTheBar()
    {
        shouldStandAt({520, 15}, {0, Qt::TopEdge | Qt::RightEdge, {0, 0, 360, 0}, true});
        shouldStandAt({400, 785}, {0, Qt::BottomEdge | Qt::LeftEdge, {280, 0, 0, 0}, true});
        shouldStandAt({15, 300}, {0, Qt::LeftEdge | Qt::TopEdge, {0, 200, 0, 0}, true});
        shouldStandAt({985, 500}, {0, Qt::RightEdge | Qt::BottomEdge, {0, 0, 0, 200}, true});
    }

    void shouldKeepClearOfABarThatReachesBeyondItsRoom()
    {
        // given: 40 pixels of room are taken by a bar that ends 8 pixels farther in
        const QList<PanelScreen> below{{{0, 0, 1000, 800}, {0, 0, 1000, 760}, 1, 8}};
        const QList<PanelScreen> above{{{0, 0, 1000, 800}, {0, 40, 1000, 760}, 1, 8}};
        const QList<PanelScreen> left{{{0, 0, 1000, 800}, {40, 0, 960, 800}, 1, 8}};
        const QList<PanelScreen> right{{{0, 0, 1000, 800}, {0, 0, 960, 800}, 1, 8}};

        // then
        QCOMPARE(place({{}, QPoint(500, 770)}, below), QPoint(380, 752 - 200));
        QCOMPARE(place({{}, QPoint(500, 20)}, above), QPoint(380, 48));
        QCOMPARE(place({{}, QPoint(20, 300)}, left), QPoint(48, 301));
        QCOMPARE(place({{}, QPoint(980, 300)}, right), QPoint(952 - 240, 301));
        QCOMPARE(place({{}, QPoint(990, 20)}, above), QPoint(760, 48));
        const auto margins = [&below](const QPoint &point) {
            return panelEdges(panel, QRect(point, QSize(1, 1)), below).margins;
        };
        QCOMPARE(margins({400, 785}), QMargins(280, 0, 0, 8));
        QCOMPARE(margins({520, 15}), QMargins(0, 8, 360, 0));
        QCOMPARE(margins({15, 300}), QMargins(8, 200, 0, 0));
        QCOMPARE(margins({985, 500}), QMargins(0, 0, 8, 200));
        QCOMPARE(margins({400, 300}), QMargins(280, 301, 0, 0));
    }

    void shouldStandInTheCornerWhereTheItemIsNearToTwoEdges()
    {
        shouldStandAt({5, 15}, {0, Qt::TopEdge | Qt::LeftEdge, {}, true});
        shouldStandAt({995, 15}, {0, Qt::TopEdge | Qt::RightEdge, {}, true});
        shouldStandAt({5, 785}, {0, Qt::BottomEdge | Qt::LeftEdge, {}, true});
        shouldStandAt({995, 785}, {0, Qt::BottomEdge | Qt::RightEdge, {}, true});
    }

    void shouldStandAtTheItemItselfWhereThatIsNotInABar()
    {
        shouldStandAt({400, 300}, {0, Qt::TopEdge | Qt::LeftEdge, {280, 301, 0, 0}, false});
        shouldStandAt({600, 500}, {0, Qt::BottomEdge | Qt::RightEdge, {0, 0, 280, 300}, false});
    }

    void shouldStandAtTheEdgeOfTheScreenThatWasClicked()
    {
        // given
        const QList<PanelScreen> screens{withTopBar(), {{1000, 100, 640, 480}, {}, 1}};

        // when
        const PanelEdges found =
            panelEdges(panel, reportedAnchor({1300, 575}, screens, Pixels::Logical), screens);

        // then
        QCOMPARE(found.screen, 1);
        QCOMPARE(found.edges, Qt::BottomEdge | Qt::LeftEdge);
        QCOMPARE(found.margins, QMargins(180, 0, 0, 0));
    }

    void shouldShowItsUpperLeftPartAtAnEdgeWhereItDoesNotFit()
    {
        const QList<PanelScreen> screens{{{0, 0, 200, 100}, {}, 1}};
        for (const QPoint &point : {QPoint(100, 5), QPoint(190, 95), QPoint(100, 50)}) {
            const PanelEdges found = panelEdges(panel, QRect(point, QSize(1, 1)), screens);
            QCOMPARE(found.edges, Qt::TopEdge | Qt::LeftEdge);
            QCOMPARE(found.margins, QMargins());
        }
    }

    void shouldTakeWhatIsReportedOnWaylandForThePixelsThatLeadToABar()
    {
        // given
        const QList<PanelScreen> screens{{{0, 0, 1000, 800}, {0, 0, 1000, 800}, 2}};
        const auto place = [&screens](const QPoint &reported, Pixels expected) {
            return reportedAnchor(reported, screens, expected);
        };

        // then
        QCOMPARE(place({600, 15}, Pixels::Logical), QRect(600, 15, 1, 1));
        QCOMPARE(place({600, 30}, Pixels::Physical), QRect(300, 15, 1, 1));
        QCOMPARE(place({1900, 30}, Pixels::Logical), QRect(950, 15, 1, 1));
        QCOMPARE(place({600, 1580}, Pixels::Logical), QRect(300, 790, 1, 1));
        QCOMPARE(place({600, 790}, Pixels::Physical), QRect(600, 790, 1, 1));
        QCOMPARE(place({600, 400}, Pixels::Logical), QRect(600, 400, 1, 1));
        QCOMPARE(place({600, 400}, Pixels::Physical), QRect(300, 200, 1, 1));
    }

    void shouldTakeWhatIsReportedOnWaylandForTheScreenWhereItLeadsToABar()
    {
        // given
        const QList<PanelScreen> screens{{{0, 0, 1000, 800}, {0, 0, 1000, 800}, 2},
                                         {{1000, 0, 1000, 800}, {1000, 0, 1000, 800}, 2}};

        // then
        QCOMPARE(reportedAnchor({1500, 15}, screens, Pixels::Logical), QRect(1500, 15, 1, 1));
        QCOMPARE(reportedAnchor({1500, 30}, screens, Pixels::Physical), QRect(750, 15, 1, 1));
    }

    void shouldStandInTheTopRightCornerWhereNothingUsefulIsReportedOnWayland()
    {
        for (const QPoint &point : {QPoint(), QPoint(5000, 5000)}) {
            const QList<PanelScreen> screens{{{0, 0, 1000, 800}, {0, 0, 1000, 800}, 1}};
            const PanelEdges found =
                panelEdges(panel, reportedAnchor(point, screens, Pixels::Logical), screens);
            QCOMPARE(found.edges, Qt::TopEdge | Qt::RightEdge);
            QCOMPARE(found.margins, QMargins());
            QVERIFY(found.isBesideBars);
        }
    }
};

QTEST_GUILESS_MAIN(TestPanelPlacement)
#include "tst_panelplacement.moc"
