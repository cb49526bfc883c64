#include "model/tasktemplate.h"
#include "sectionfixture.h"
#include "views/sidebar/templatelistviewmodel.h"

#include <cmath>

using namespace Qt::StringLiterals;
using qmltest::centre;
using qmltest::findItem;

/// The templates section, used with mouse and keys.
class TestTemplateListView : public QObject
{
    Q_OBJECT

private:
    struct Fixture : SectionFixture {
        explicit Fixture(int count = 0, int height = 300)
        {
            for (int i = 0; i < count; ++i)
                store.insert<TaskTemplate>(u"Skabelon %1"_s.arg(i + 1), i);
            show<TemplateListViewModel>("TemplateListView", height);
        }
        explicit Fixture(const QString &name)
        {
            store.insert<TaskTemplate>(name, 0);
            show<TemplateListViewModel>("TemplateListView", 300);
        }

        QStringList names()
        {
            QStringList names;
            for (const TaskTemplate *each : records<TaskTemplate>())
                names << each->name();
            return names;
        }
        QString shownName(int row) const { return text(inEntry(row, "nameText")); }
    };

private Q_SLOTS:
    void shouldLayOutHeaderAndEmptyText()
    {
        const Fixture f;
        const Theme theme;
        const QRectF title = f.place("sectionTitle");
        const QRectF plus = f.place("plusButton");
        const QRectF empty = f.place("emptyText");
        QCOMPARE(f.text(f.item("sectionTitle")), u"Skabeloner"_s);
        QCOMPARE(f.font(f.item("sectionTitle")).pixelSize(), 12);
        QCOMPARE(f.font(f.item("sectionTitle")).weight(), QFont::DemiBold);
        QCOMPARE(f.color(f.item("sectionTitle")), theme.secondary());
        QCOMPARE(title.left(), 12.0 + 8);
        QCOMPARE(std::min(title.top(), plus.top()), 12.0);
        QCOMPARE(plus.right(), 180.0 - 12 - 8);
        QVERIFY(std::abs(plus.center().y() - title.center().y()) <= 0.5);
        QCOMPARE(f.item("plusButton")->property("symbol").toString(), u"plus"_s);
        QCOMPARE(f.item("plusButton")->property("symbolSize").toInt(), 10);
        QCOMPARE(f.item("plusButton")->property("symbolColor").value<QColor>(),
                 theme.brandAccent());
        QVERIFY(f.item("emptyText")->isVisible());
        QVERIFY(!f.item("sectionList")->isVisible());
        QCOMPARE(f.text(f.item("emptyText")), u"Ingen skabeloner"_s);
        QCOMPARE(f.font(f.item("emptyText")).pixelSize(), 11);
        QCOMPARE(f.color(f.item("emptyText")), theme.tertiary());
        QCOMPARE(empty.left(), 12.0 + 8);
        QCOMPARE(empty.right(), 180.0 - 12 - 8);
        QCOMPARE(empty.top(), std::max(title.bottom(), plus.bottom()) + 8);
        QCOMPARE(f.item("section")->implicitHeight(), empty.bottom() + 12);
    }

    void shouldLayOutTheAddRow()
    {
        const Fixture f(1);
        const double listTop = f.place("sectionList").top();
        f.click("plusButton");
        const QQuickItem *const field = f.item("nameField");
        const QRectF name = f.place("nameField");
        const QRectF add = f.place("addButton");
        const QRectF cancel = f.place("cancelButton");
        QCOMPARE(name.left(), 12.0 + 8);
        QCOMPARE(name.top(), f.place("sectionHeader").bottom() + 8);
        QCOMPARE(add.left(), name.right() + 4);
        QCOMPARE(cancel.left(), add.right() + 4);
        QCOMPARE(cancel.right(), 180.0 - 12 - 8);
        for (const QRectF &button : {add, cancel})
            QVERIFY(std::abs(button.center().y() - name.center().y()) <= 0.5);
        QCOMPARE(f.font(field).pixelSize(), 11);
        QCOMPARE(field->property("placeholderText").toString(), u"Navn"_s);
        QCOMPARE(field->property("leftPadding").toInt(), 6);
        QCOMPARE(field->property("rightPadding").toInt(), 6);
        QCOMPARE(field->property("topPadding").toInt(), 4);
        QCOMPARE(field->property("bottomPadding").toInt(), 4);
        QCOMPARE(name.height(), field->property("contentHeight").toReal() + 8);
        QCOMPARE(f.window->colorAt({name.right() - 3, name.center().y()}),
                 Theme().textBackground());
        QCOMPARE(f.window->colorAt({name.right() - 0.5, name.top()}), Theme().controlBackground());
        for (const auto &[button, symbol, color] :
             {std::tuple{"addButton", u"checkmark"_s, Theme().green()},
              std::tuple{"cancelButton", u"xmark"_s, Theme().red()}}) {
            QCOMPARE(f.item(button)->property("symbol").toString(), symbol);
            QCOMPARE(f.item(button)->property("symbolSize").toInt(), 9);
            QCOMPARE(f.item(button)->property("symbolColor").value<QColor>(), color);
        }
        QCOMPARE(f.place("sectionList").top(), name.bottom() + 8);
        f.click("cancelButton");
        QVERIFY(!f.maybe("nameField"));
        QCOMPARE(f.place("sectionList").top(), listTop);
    }

    void shouldLayOutItsEntries()
    {
        const Fixture f(3);
        QCOMPARE(f.entries().size(), 3);
        const QRectF list = f.place("sectionList");
        QCOMPARE(list.left(), 12.0);
        QCOMPARE(list.right(), 180.0 - 12);
        QCOMPARE(list.top(), f.place("sectionHeader").bottom() + 8);
        QCOMPARE(list.bottom(), 300.0 - 12);
        for (int i = 0; i < 3; ++i) {
            const QRectF entry = f.place(f.entries().at(i));
            const QRectF button = f.place(f.inEntry(i, "templateButton"));
            const QQuickItem *const label = f.inEntry(i, "nameText");
            QCOMPARE(entry.left(), 12.0);
            QCOMPARE(entry.width(), 156.0);
            QCOMPARE(entry.top(), list.top() + i * (entry.height() + 2));
            QCOMPARE(button, entry.adjusted(8, 6, -8, -6));
            QCOMPARE(f.text(label), u"Skabelon %1"_s.arg(i + 1));
            QCOMPARE(f.font(label).pixelSize(), 11);
            QCOMPARE(f.color(label), Theme().primary());
            // after the symbol, in its box of 14
            QCOMPARE(f.place(label).left(), button.left() + 14 + 6);
            QCOMPARE(f.place(label).right(), button.right() - 6);
        }
        QCOMPARE(f.item("section")->implicitHeight(), f.place(f.entries().last()).bottom() + 12);
    }

    void shouldMarkTheEntryUnderThePointer()
    {
        const Fixture f(2);
        const Theme theme;
        const QRectF entry = f.place(f.entries().at(0));
        const QQuickItem *const button = f.inEntry(0, "templateButton");
        const QQuickItem *const mark = f.inEntry(0, "deleteMark");
        const QColor before = f.window->colorAt({entry.center().x(), entry.top() + 2});
        QCOMPARE(before, theme.controlBackground());
        // its padding too
        f.window->hover((entry.topLeft() + QPointF(2, 2)).toPoint());
        QTRY_VERIFY(f.entries().at(0)->property("isHovered").toBool());
        QVERIFY(!f.entries().at(1)->property("isHovered").toBool());
        const QQuickItem *const background = f.inEntry(0, "entryBackground");
        QVERIFY(background->isVisible());
        QCOMPARE(background->opacity(), 0.15);
        QCOMPARE(f.color(background), theme.brandAccent());
        QCOMPARE(background->property("radius").toInt(), 4);
        QTRY_VERIFY(f.window->colorAt({entry.center().x(), entry.top() + 2}) != before);
        QCOMPARE(f.window->colorAt(entry.topLeft()), before); // rounded
        QCOMPARE(f.place(mark).right(), entry.right() - 8);
        QCOMPARE(f.place(button).right() + 6, f.place(mark).left());
        QCOMPARE(f.place(f.entries().at(0)), entry);
        QCOMPARE(mark->property("symbolSize").toInt(), 12);
        QCOMPARE(mark->property("symbolColor").value<QColor>(), [&] {
            QColor color = theme.secondary();
            color.setAlphaF(0.6F);
            return color;
        }());
        // also over what lies in it
        for (const QQuickItem *inside : {button, mark}) {
            f.hover(inside);
            QVERIFY(f.entries().at(0)->property("isHovered").toBool());
        }
        f.hover(f.entries().at(1));
        QTRY_VERIFY(!f.entries().at(0)->property("isHovered").toBool());
        QVERIFY(f.entries().at(1)->property("isHovered").toBool());
        QVERIFY(!background->isVisible());
        QCOMPARE(f.place(button).right(), entry.right() - 8);
    }

    void shouldHandOverTheNameOnceWhenClicked()
    {
        Fixture f(u"  Møde\tmed Åse "_s);
        const QRectF button = f.place(f.inEntry(0, "templateButton"));
        // on the symbol, and where there is nothing
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          (button.topLeft() + QPointF(2, 2)).toPoint());
        QCOMPARE(f.added(), QStringList{u"  Møde\tmed Åse "_s});
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          QPointF(button.right() - 30, button.bottom() - 2).toPoint());
        QCOMPARE(f.added().size(), 2);
        // not beside it
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          (button.topLeft() - QPointF(4, 0)).toPoint());
        QCOMPARE(f.added().size(), 2);
        QVERIFY(f.item("elsewhere")->hasActiveFocus());
    }

    void shouldDeleteWithoutAsking()
    {
        Fixture f(3);
        f.hover(f.entries().at(1));
        QTRY_VERIFY(f.entries().at(1)->property("isHovered").toBool());
        f.click(f.inEntry(1, "deleteMark"));
        QCOMPARE(f.names(), (QStringList{u"Skabelon 1"_s, u"Skabelon 3"_s}));
        QTRY_COMPARE(f.entries().size(), 2);
        QVERIFY(f.added().isEmpty());
        // the next one moves under the pointer
        QTRY_VERIFY(f.entries().at(1)->property("isHovered").toBool());
        f.click(f.inEntry(1, "deleteMark"));
        QTRY_COMPARE(f.entries().size(), 1);
        f.click(f.inEntry(0, "deleteMark"));
        QTRY_VERIFY(f.item("emptyText")->isVisible());
    }

    void shouldDeleteOnlyOneByADoubleClick()
    {
        // given
        Fixture f(3);
        const QPoint mark = centre(f.inEntry(0, "deleteMark"));
        f.window->hover(mark);
        QTRY_VERIFY(f.entries().at(0)->property("isHovered").toBool());

        // when
        QTest::mouseDClick(f.window.get(), Qt::LeftButton, {}, mark);

        // then
        QCOMPARE(f.names(), (QStringList{u"Skabelon 2"_s, u"Skabelon 3"_s}));
        QVERIFY(f.added().isEmpty());

        // when
        QTRY_VERIFY(f.entries().at(0)->property("isHovered").toBool());
        f.window->hover(mark + QPoint(0, 8));
        f.window->hover(mark);
        f.click(f.inEntry(0, "deleteMark"));

        // then
        QCOMPARE(f.names(), QStringList{u"Skabelon 3"_s});
    }

    void shouldDeleteNothingByADoubleClickOnTheCross()
    {
        // given the cross lies where the first mark is once the form is gone
        Fixture f(3);
        f.click("plusButton");
        const QPoint cross = centre(f.item("cancelButton"));

        // when
        QTest::mouseDClick(f.window.get(), Qt::LeftButton, {}, cross);

        // then
        QVERIFY(!f.maybe("nameField"));
        QVERIFY(f.place(f.inEntry(0, "deleteMark")).contains(cross));
        QCOMPARE(f.names().size(), 3);
        QVERIFY(f.added().isEmpty());
    }

    void shouldDrawNoDeleteMarkWithoutThePointer()
    {
        // given
        const Fixture f(2);
        const QQuickItem *const mark = f.inEntry(0, "deleteMark");
        const QRect place = f.place(mark).toRect();
        const auto colors = [&f, &place] {
            QSet<QRgb> colors;
            const QImage picture = f.window->picture();
            for (int y = place.top(); y <= place.bottom(); ++y) {
                for (int x = place.left(); x <= place.right(); ++x)
                    colors.insert(picture.pixel(x, y));
            }
            return colors;
        };
        QCOMPARE(colors(), QSet<QRgb>{Theme().controlBackground().rgb()});

        // when
        f.hover(mark);

        // then
        QTRY_VERIFY(colors().size() > 2);

        // when
        f.hover(f.entries().at(1));

        // then
        QTRY_COMPARE(colors(), QSet<QRgb>{Theme().controlBackground().rgb()});
    }

    void shouldAddWhatIsTyped()
    {
        Fixture f;
        f.click("plusButton");
        QVERIFY(f.item("nameField")->hasActiveFocus());
        QVERIFY(!f.item("emptyText")->isVisible());
        QVERIFY(f.item("sectionList")->isVisible());
        QVERIFY(f.entries().isEmpty());
        f.type(u"  Møde  "_s);
        f.press(Qt::Key_Return);
        QCOMPARE(f.names(), QStringList{u"Møde"_s});
        QVERIFY(!f.maybe("nameField"));
        QTRY_COMPARE(f.entries().size(), 1);
        QCOMPARE(f.shownName(0), u"Møde"_s);
        // and with the checkmark
        f.click("plusButton");
        f.type(u"Frokost"_s);
        f.click("addButton");
        QCOMPARE(f.names(), (QStringList{u"Møde"_s, u"Frokost"_s}));
        QVERIFY(!f.maybe("nameField"));
        QTRY_COMPARE(f.entries().size(), 2);
        // Return did nothing else
        QVERIFY(f.keys().isEmpty());
        QVERIFY(f.added().isEmpty());
    }

    void shouldKeepTheAddRowOpenForBlanks()
    {
        Fixture f;
        f.click("plusButton");
        const QQuickItem *const add = f.item("addButton");
        QVERIFY(!add->isEnabled());
        QVERIFY(add->opacity() < 0.6);
        f.type(u"   "_s);
        QVERIFY(!add->isEnabled());
        f.press(Qt::Key_Return);
        f.click(add);
        QVERIFY(f.maybe("nameField"));
        QCOMPARE(f.text(f.item("nameField")), u"   "_s);
        QVERIFY(f.item("nameField")->hasActiveFocus());
        QVERIFY(f.names().isEmpty());
        f.type(u"a"_s);
        QVERIFY(add->isEnabled());
        QCOMPARE(add->opacity(), 1.0);
        f.press(Qt::Key_Backspace);
        QVERIFY(!add->isEnabled());
    }

    void shouldForgetWhatWasTypedWhenCancelled()
    {
        Fixture f;
        f.click("plusButton");
        f.type(u"Møde"_s);
        f.click("cancelButton");
        QVERIFY(!f.maybe("nameField"));
        QVERIFY(f.item("emptyText")->isVisible());
        f.click("plusButton");
        QCOMPARE(f.text(f.item("nameField")), QString());
        QVERIFY(f.names().isEmpty());
    }

    void shouldEmptyTheOpenFieldWhenPlusIsPressedAgain()
    {
        Fixture f;
        f.click("plusButton");
        f.type(u"Møde"_s);
        f.item("elsewhere")->forceActiveFocus();
        f.click("plusButton");
        QCOMPARE(f.text(f.item("nameField")), QString());
        QVERIFY(f.item("nameField")->hasActiveFocus());
        f.type(u"Frokost"_s);
        f.press(Qt::Key_Enter);
        QCOMPARE(f.names(), QStringList{u"Frokost"_s});
    }

    void shouldLeaveEscapeToItsOwner()
    {
        Fixture f;
        f.click("plusButton");
        f.type(u"Møde"_s);
        f.press(Qt::Key_Escape);
        QCOMPARE(f.keys(), QVariantList{int(Qt::Key_Escape)});
        QCOMPARE(f.text(f.item("nameField")), u"Møde"_s);
        // the keys that edit are not passed on
        for (const auto key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Home,
                               Qt::Key_Left, Qt::Key_Space})
            f.press(key);
        QCOMPARE(f.keys().size(), 1);
    }

    void shouldLeaveTheKeyboardToItsOwnerAfterTheFormHasClosed_data()
    {
        QTest::addColumn<QString>("how");
        QTest::newRow("Return") << u"return"_s;
        QTest::newRow("checkmark") << u"addButton"_s;
        QTest::newRow("xmark") << u"cancelButton"_s;
        QTest::newRow("xmark by key") << u"space"_s;
    }
    void shouldLeaveTheKeyboardToItsOwnerAfterTheFormHasClosed()
    {
        QFETCH(QString, how);
        Fixture f;
        f.click("plusButton");
        f.type(u"Møde"_s);
        if (how == "return"_L1) {
            f.press(Qt::Key_Return);
        } else if (how == "space"_L1) {
            f.press(Qt::Key_Tab);
            QVERIFY(f.item("addButton")->hasActiveFocus());
            f.press(Qt::Key_Tab);
            QVERIFY(f.item("cancelButton")->hasActiveFocus());
            f.press(Qt::Key_Space);
        } else {
            f.click(how.toLatin1().constData());
        }
        QVERIFY(!f.maybe("nameField"));
        QVERIFY(f.window->activeFocusItem());
        QVERIFY(f.window->activeFocusItem()->window() == f.window.get());
        f.press(Qt::Key_Down);
        QCOMPARE(f.keys(), QVariantList{int(Qt::Key_Down)});
    }

    void shouldNeverMoveTheFocusToAButtonByAClick()
    {
        Fixture f(2);
        f.click(f.inEntry(0, "templateButton"));
        f.click(f.inEntry(1, "deleteMark"));
        QVERIFY(f.item("elsewhere")->hasActiveFocus());
        f.click("plusButton");
        f.type(u"Mø"_s);
        f.click(f.inEntry(0, "templateButton"));
        f.type(u"de"_s);
        QCOMPARE(f.text(f.item("nameField")), u"Møde"_s);
    }

    void shouldBeUsableByKeyAlone()
    {
        Fixture f(2);
        f.press(Qt::Key_Tab);
        QVERIFY(f.item("plusButton")->hasActiveFocus());
        f.press(Qt::Key_Tab);
        QVERIFY(f.inEntry(0, "templateButton")->hasActiveFocus());
        QVERIFY(f.entries().at(0)->property("isHovered").toBool());
        f.press(Qt::Key_Space);
        QCOMPARE(f.added(), QStringList{u"Skabelon 1"_s});
        f.press(Qt::Key_Tab);
        QQuickItem *const mark = f.inEntry(0, "deleteMark");
        QVERIFY(mark->hasActiveFocus());
        QVERIFY(f.entries().at(0)->property("isHovered").toBool());
        QCOMPARE(mark->property("contentItem").value<QQuickItem *>()->opacity(), 1.0);
        f.press(Qt::Key_Space);
        QCOMPARE(f.names(), QStringList{u"Skabelon 2"_s});
        QTRY_COMPARE(f.entries().size(), 1);
        // and the keys are the owner's
        f.press(Qt::Key_Down);
        QCOMPARE(f.keys(), QVariantList{int(Qt::Key_Down)});
    }

    void shouldTakeWhatIsPasted_data()
    {
        QTest::addColumn<QString>("pasted");
        QTest::addColumn<QString>("stored");
        QTest::newRow("no-break spaces") << u"\u00a0\u00a0Møde\u00a0"_s << u"Møde"_s;
        QTest::newRow("tabs") << u"\tMøde\tmed\t"_s << u"Møde\tmed"_s;
        QTest::newRow("line breaks") << u"Møde\nmed Åse"_s << u"Møde\nmed Åse"_s;
        QTest::newRow("emoji") << u" 👩‍💻 🇩🇰 "_s << u"👩‍💻 🇩🇰"_s;
        QTest::newRow("right to left") << u"اجتماع مع Åse"_s << u"اجتماع مع Åse"_s;
        QTest::newRow("ten thousand") << QString(10000, u'å') << QString(10000, u'å');
        QTest::newRow("markup") << u"<b>Møde</b> &amp; <img src='x'>"_s
                                << u"<b>Møde</b> &amp; <img src='x'>"_s;
    }
    void shouldTakeWhatIsPasted()
    {
        QFETCH(QString, pasted);
        QFETCH(QString, stored);
        Fixture f(1);
        const double height = f.entries().at(0)->height();
        f.click("plusButton");
        f.paste(pasted);
        f.press(Qt::Key_Return);
        QCOMPARE(f.names().last(), stored);
        QTRY_COMPARE(f.entries().size(), 2);
        // on one line, at the left, inside its entry
        const QQuickItem *const label = f.inEntry(1, "nameText");
        QCOMPARE(label->property("lineCount").toInt(), 1);
        QVERIFY(f.entries().at(1)->height() <= height + 6); // fonts of other scripts are higher
        QVERIFY(label->property("contentWidth").toReal() <= label->width());
        QCOMPARE(label->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
        f.click(f.inEntry(1, "templateButton"));
        QCOMPARE(f.added(), QStringList{stored});
    }

    void shouldShowALongNameWholeInATooltip()
    {
        const QString name = u"En skabelon med et meget langt navn"_s;
        const Fixture f(name);
        const QQuickItem *const label = f.inEntry(0, "nameText");
        QVERIFY(label->property("truncated").toBool());
        f.hover(label);
        QTRY_VERIFY(findItem(f.window->contentItem(), u"helpTip"_s));
        QCOMPARE(f.text(findItem(f.window->contentItem(), u"helpTip"_s)), name);
    }

    void shouldScrollItsListAndKeepTheHeader()
    {
        Fixture f(20, 150);
        const QQuickItem *const list = f.item("sectionList");
        QCOMPARE(f.place(list).bottom(), 150.0 - 12);
        const QRectF header = f.place("sectionHeader");
        f.scrollDown(centre(list));
        QTRY_VERIFY(list->property("atYEnd").toBool());
        QCOMPARE(f.place("sectionHeader"), header);
        QCOMPARE(f.shownName(static_cast<int>(f.entries().size()) - 1), u"Skabelon 20"_s);
        // built as far as it is seen, or nearly
        Fixture many(1000, 150);
        QVERIFY(many.entries().size() < 40);
    }

    void shouldScrollToANewTemplate()
    {
        Fixture f(20, 150);
        f.click("plusButton");
        f.type(u"Ny"_s);
        f.press(Qt::Key_Return);
        QTRY_COMPARE(f.shownName(static_cast<int>(f.entries().size()) - 1), u"Ny"_s);
        QVERIFY(f.place(f.entries().last()).bottom() <= f.place("sectionList").bottom());
    }

    void shouldScrollAsAWholeWhenItsShareIsTooSmall()
    {
        Fixture f(3, 40);
        QCOMPARE(f.place("sectionList").height(), 26.0);
        f.click("plusButton");
        // the field has the focus, so it is in sight
        QVERIFY(f.item("section")->property("contentHeight").toReal() > 40);
        QVERIFY(f.place("nameField").top() >= 0);
        QVERIFY(f.place("nameField").bottom() <= 40);
        f.click("cancelButton");
        QVERIFY(!f.maybe("nameField"));
        // an entry can be brought into sight and used
        f.scrollDown({90, 6});
        QTRY_VERIFY(f.item("section")->property("atYEnd").toBool());
        QVERIFY(f.place(f.entries().at(0)).bottom() <= 40);
        f.click(f.inEntry(0, "templateButton"));
        QCOMPARE(f.added(), QStringList{u"Skabelon 1"_s});
        // and nothing is drawn outside of the share
        QCOMPARE(f.window->colorAt({90, 60}), Theme().controlBackground());
    }

    void shouldBringWhatTabReachesIntoSight()
    {
        Fixture f(20, 60);
        for (int i = 0; i < 30; ++i) {
            f.press(Qt::Key_Tab);
            const QQuickItem *const focus = f.window->activeFocusItem();
            const QRectF place = f.place(focus);
            QVERIFY2(place.top() >= 0 && place.bottom() <= 60, qPrintable(focus->objectName()));
        }
        QVERIFY(f.item("sectionList")->property("contentY").toReal() > 0);
    }

    void shouldNotBeDisturbedByAnAddedTemplateWhileHovered()
    {
        Fixture f(2);
        QQuickItem *const entry = f.entries().at(0);
        f.hover(entry);
        QTRY_VERIFY(entry->property("isHovered").toBool());
        f.store.insert<TaskTemplate>(u"Ny"_s, 5);
        QTRY_COMPARE(f.entries().size(), 3);
        QCOMPARE(f.entries().at(0), entry);
        QVERIFY(entry->property("isHovered").toBool());
    }

    void shouldFollowTheStoreWithoutBeingAsked()
    {
        Fixture f(1);
        const auto *const made = f.store.insert<TaskTemplate>(u"a"_s, -1);
        QTRY_COMPARE(f.entries().size(), 2);
        QCOMPARE(f.shownName(0), u"a"_s);
        f.store.context().remove(const_cast<TaskTemplate *>(made));
        QTRY_COMPARE(f.entries().size(), 1);
    }

    void shouldNameItsControls()
    {
        Fixture f(1);
        const auto expect = [&](QQuickItem *item, QAccessible::Role role, const QString &name) {
            QVERIFY(f.accessible(item));
            QCOMPARE(f.accessible(item)->role(), role);
            QCOMPARE(f.accessibleName(item), name);
            QVERIFY(!f.accessible(item)->state().invisible);
        };
        expect(f.item("sectionTitle"), QAccessible::StaticText, u"Skabeloner"_s);
        expect(f.item("plusButton"), QAccessible::Button, u"Ny skabelon"_s);
        expect(f.item("sectionList"), QAccessible::List, u"Skabeloner"_s);
        expect(f.entries().at(0), QAccessible::ListItem, u"Skabelon 1"_s);
        expect(f.inEntry(0, "templateButton"), QAccessible::Button, u"Skabelon 1"_s);
        // though it is not drawn
        expect(f.inEntry(0, "deleteMark"), QAccessible::Button, u"Slet skabelon Skabelon 1"_s);
        f.pressAccessibly(f.item("plusButton"));
        expect(f.item("nameField"), QAccessible::EditableText, u"Navn"_s);
        expect(f.item("addButton"), QAccessible::Button, u"Tilføj skabelon"_s);
        expect(f.item("cancelButton"), QAccessible::Button, u"Annuller"_s);
        f.pressAccessibly(f.item("addButton"));
        QVERIFY(f.maybe("nameField"));
        f.type(u"Møde"_s);
        f.pressAccessibly(f.item("addButton"));
        QCOMPARE(f.names(), (QStringList{u"Skabelon 1"_s, u"Møde"_s}));
        f.pressAccessibly(f.item("plusButton"));
        f.pressAccessibly(f.item("cancelButton"));
        QVERIFY(!f.maybe("nameField"));
        f.pressAccessibly(f.inEntry(0, "templateButton"));
        QCOMPARE(f.added(), QStringList{u"Skabelon 1"_s});
        f.pressAccessibly(f.inEntry(0, "deleteMark"));
        QCOMPARE(f.names(), QStringList{u"Møde"_s});
        f.pressAccessibly(f.inEntry(0, "deleteMark"));
        QTRY_VERIFY(f.item("emptyText")->isVisible());
        expect(f.item("emptyText"), QAccessible::StaticText, u"Ingen skabeloner"_s);
    }
};

QTEST_MAIN(TestTemplateListView)
#include "tst_templatelistview.moc"
