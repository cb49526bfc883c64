#include "model/tasktemplate.h"
#include "sectionfixture.h"
#include "views/sidebar/templatelistviewmodel.h"

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
        // given
        const Fixture f;
        const QRectF title = f.place("sectionTitle");
        const QRectF plus = f.place("plusButton");

        // then
        QCOMPARE(
            layout::deviations(f.root(), f.emptySection(u"Skabeloner"_s, u"Ingen skabeloner"_s)),
            QStringList());
        QCOMPARE(std::min(title.top(), plus.top()), 12.0);
        QCOMPARE(f.place("emptyText").top(), std::max(title.bottom(), plus.bottom()) + 8);
    }

    void shouldLayOutTheAddRow()
    {
        // given
        const Fixture f(1);
        const double listTop = f.place("sectionList").top();

        // when
        f.click("plusButton");

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"nameField.left"_s, 12 + 8},
                     {u"nameField.top - sectionHeader.bottom"_s, 8},
                     {u"addButton.left - nameField.right"_s, 4},
                     {u"cancelButton.left - addButton.right"_s, 4},
                     {u"section.right - cancelButton.right"_s, 12 + 8},
                     {u"addButton.centreY - nameField.centreY"_s, 0},
                     {u"cancelButton.centreY - nameField.centreY"_s, 0},
                     {u"sectionList.top - nameField.bottom"_s, 8},
                 }),
                 QStringList());
        // clang-format on
        QCOMPARE(layout::deviations(f.root(), f.formField(u"nameField"_s, u"Navn"_s)),
                 QStringList());
        QCOMPARE(layout::deviations(f.root(), f.formButtons()), QStringList());
        const QRectF name = f.place("nameField");
        QCOMPARE(f.window->colorAt({name.right() - 3, name.center().y()}),
                 Theme().textBackground());
        QCOMPARE(f.window->colorAt({name.right() - 0.5, name.top()}), Theme().controlBackground());

        // when
        f.click("cancelButton");

        // then
        QVERIFY(!f.maybe("nameField"));
        QCOMPARE(f.place("sectionList").top(), listTop);
    }

    void shouldLayOutItsEntries()
    {
        // given
        const Fixture f(3);
        const QRectF list = f.place("sectionList");

        // then
        QCOMPARE(f.entries().size(), 3);
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"section.bottom"_s, 300},
                     {u"sectionList.left"_s, 12},
                     {u"section.right - sectionList.right"_s, 12},
                     {u"sectionList.top - sectionHeader.bottom"_s, 8},
                     {u"section.bottom - sectionList.bottom"_s, 12},
                     {u"section.implicitHeight - entryBackground[2].bottom"_s, 12},
                 }),
                 QStringList());
        for (int i = 0; i < 3; ++i) {
            const QRectF entry = f.place(f.entries().at(i));
            QCOMPARE(f.place(f.inEntry(i, "entryBackground")), entry);
            QCOMPARE(entry.top(), list.top() + i * (entry.height() + 2));
            QCOMPARE(layout::deviations(f.entries().at(i), {
                         {u"entryBackground.left"_s, 12},
                         {u"entryBackground.width"_s, 156},
                         {u"templateButton.left - entryBackground.left"_s, 8},
                         {u"templateButton.top - entryBackground.top"_s, 6},
                         {u"entryBackground.right - templateButton.right"_s, 8},
                         {u"entryBackground.bottom - templateButton.bottom"_s, 6},
                         {u"nameText.text"_s, u"Skabelon %1"_s.arg(i + 1)},
                         {u"nameText.font.pixelSize"_s, 11},
                         {u"nameText.color"_s, Theme().primary()},
                         // after the symbol, in its box of 14
                         {u"nameText.left - templateButton.left"_s, 14 + 6},
                         {u"templateButton.right - nameText.right"_s, 6},
                     }),
                     QStringList());
        }
        // clang-format on
    }

    void shouldMarkTheEntryUnderThePointer()
    {
        // given
        const Fixture f(2);
        const QRectF entry = f.place(f.entries().at(0));
        const QQuickItem *const button = f.inEntry(0, "templateButton");
        const QQuickItem *const mark = f.inEntry(0, "deleteMark");
        const QQuickItem *const background = f.inEntry(0, "entryBackground");
        const QColor before = f.window->colorAt({entry.center().x(), entry.top() + 2});
        QCOMPARE(before, Theme().controlBackground());

        // when the pointer is anywhere in it, such as in its padding
        f.window->hover((entry.topLeft() + QPointF(2, 2)).toPoint());

        // then
        QTRY_VERIFY(f.entries().at(0)->property("isHovered").toBool());
        QVERIFY(!f.entries().at(1)->property("isHovered").toBool());
        QCOMPARE(f.place(background), entry);
        QCOMPARE(layout::deviations(f.entries().at(0), f.hoveredEntry(u"templateButton"_s, 6)),
                 QStringList());
        QTRY_VERIFY(f.window->colorAt({entry.center().x(), entry.top() + 2}) != before);
        QCOMPARE(f.window->colorAt(entry.topLeft()), before); // rounded
        QCOMPARE(f.place(f.entries().at(0)), entry);
        // also over what lies in it
        for (const QQuickItem *inside : {button, mark}) {
            f.hover(inside);
            QVERIFY(f.entries().at(0)->property("isHovered").toBool());
        }

        // when
        f.hover(f.entries().at(1));

        // then
        QTRY_VERIFY(!f.entries().at(0)->property("isHovered").toBool());
        QVERIFY(f.entries().at(1)->property("isHovered").toBool());
        QVERIFY(!background->isVisible());
        QCOMPARE(f.place(button).right(), entry.right() - 8);
    }

    void shouldHandOverTheNameOnceWhenClicked()
    {
        // given
        Fixture f(u"  Møde\tmed Åse "_s);
        const QRectF button = f.place(f.inEntry(0, "templateButton"));

        // when a click is on the symbol
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          (button.topLeft() + QPointF(2, 2)).toPoint());

        // then
        QCOMPARE(f.added(), QStringList{u"  Møde\tmed Åse "_s});

        // when a click is where there is nothing
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          QPointF(button.right() - 30, button.bottom() - 2).toPoint());

        // then
        QCOMPARE(f.added().size(), 2);

        // when a click is beside it
        QTest::mouseClick(f.window.get(), Qt::LeftButton, {},
                          (button.topLeft() - QPointF(4, 0)).toPoint());

        // then
        QCOMPARE(f.added().size(), 2);
        QVERIFY(f.item("elsewhere")->hasActiveFocus());
    }

    void shouldDeleteWithoutAsking()
    {
        // given
        Fixture f(3);
        f.hover(f.entries().at(1));
        QTRY_VERIFY(f.entries().at(1)->property("isHovered").toBool());

        // when
        f.click(f.inEntry(1, "deleteMark"));

        // then
        QCOMPARE(f.names(), (QStringList{u"Skabelon 1"_s, u"Skabelon 3"_s}));
        QTRY_COMPARE(f.entries().size(), 2);
        QVERIFY(f.added().isEmpty());
        // the next one moves under the pointer
        QTRY_VERIFY(f.entries().at(1)->property("isHovered").toBool());

        // when
        f.click(f.inEntry(1, "deleteMark"));

        // then
        QTRY_COMPARE(f.entries().size(), 1);

        // when
        f.click(f.inEntry(0, "deleteMark"));

        // then
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
        QTRY_VERIFY(f.entries().at(0)->property("isHovered").toBool());

        // when
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
        // given
        Fixture f;

        // when
        f.click("plusButton");

        // then
        QVERIFY(f.item("nameField")->hasActiveFocus());
        QVERIFY(!f.item("emptyText")->isVisible());
        QVERIFY(f.item("sectionList")->isVisible());
        QVERIFY(f.entries().isEmpty());

        // when
        f.type(u"  Møde  "_s);
        f.press(Qt::Key_Return);

        // then
        QCOMPARE(f.names(), QStringList{u"Møde"_s});
        QVERIFY(!f.maybe("nameField"));
        QTRY_COMPARE(f.entries().size(), 1);
        QCOMPARE(f.shownName(0), u"Møde"_s);

        // when another is added with the checkmark
        f.click("plusButton");
        f.type(u"Frokost"_s);
        f.click("addButton");

        // then
        QCOMPARE(f.names(), (QStringList{u"Møde"_s, u"Frokost"_s}));
        QVERIFY(!f.maybe("nameField"));
        QTRY_COMPARE(f.entries().size(), 2);
        // Return did nothing else
        QVERIFY(f.keys().isEmpty());
        QVERIFY(f.added().isEmpty());
    }

    void shouldKeepTheAddRowOpenForBlanks()
    {
        // given
        Fixture f;
        f.click("plusButton");
        const QQuickItem *const add = f.item("addButton");

        // then
        QVERIFY(!add->isEnabled());
        QVERIFY(add->opacity() < 0.6);

        // when
        f.type(u"   "_s);

        // then
        QVERIFY(!add->isEnabled());

        // when
        f.press(Qt::Key_Return);
        f.click(add);

        // then
        QVERIFY(f.maybe("nameField"));
        QCOMPARE(f.text(f.item("nameField")), u"   "_s);
        QVERIFY(f.item("nameField")->hasActiveFocus());
        QVERIFY(f.names().isEmpty());

        // when
        f.type(u"a"_s);

        // then
        QVERIFY(add->isEnabled());
        QCOMPARE(add->opacity(), 1.0);

        // when
        f.press(Qt::Key_Backspace);

        // then
        QVERIFY(!add->isEnabled());
    }

    void shouldForgetWhatWasTypedWhenCancelled()
    {
        // given
        Fixture f;
        f.click("plusButton");
        f.type(u"Møde"_s);

        // when
        f.click("cancelButton");

        // then
        QVERIFY(!f.maybe("nameField"));
        QVERIFY(f.item("emptyText")->isVisible());

        // when
        f.click("plusButton");

        // then
        QCOMPARE(f.text(f.item("nameField")), QString());
        QVERIFY(f.names().isEmpty());
    }

    void shouldEmptyTheOpenFieldWhenPlusIsPressedAgain()
    {
        // given
        Fixture f;
        f.click("plusButton");
        f.type(u"Møde"_s);
        f.item("elsewhere")->forceActiveFocus();

        // when
        f.click("plusButton");

        // then
        QCOMPARE(f.text(f.item("nameField")), QString());
        QVERIFY(f.item("nameField")->hasActiveFocus());

        // when
        f.type(u"Frokost"_s);
        f.press(Qt::Key_Enter);

        // then
        QCOMPARE(f.names(), QStringList{u"Frokost"_s});
    }

    void shouldLeaveEscapeToItsOwner()
    {
        // given
        Fixture f;
        f.click("plusButton");
        f.type(u"Møde"_s);

        // when
        f.press(Qt::Key_Escape);

        // then
        QCOMPARE(f.keys(), QVariantList{int(Qt::Key_Escape)});
        QCOMPARE(f.text(f.item("nameField")), u"Møde"_s);

        // when the keys are those that edit
        for (const auto key : {Qt::Key_Up, Qt::Key_Down, Qt::Key_Left, Qt::Key_Right, Qt::Key_Home,
                               Qt::Key_Left, Qt::Key_Space})
            f.press(key);

        // then they are not passed on
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

        // given
        Fixture f;
        f.click("plusButton");
        f.type(u"Møde"_s);

        // when
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

        // then
        QVERIFY(!f.maybe("nameField"));
        QVERIFY(f.window->activeFocusItem());
        QVERIFY(f.window->activeFocusItem()->window() == f.window.get());

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.keys(), QVariantList{int(Qt::Key_Down)});
    }

    void shouldNeverMoveTheFocusToAButtonByAClick()
    {
        // given
        Fixture f(2);

        // when
        f.click(f.inEntry(0, "templateButton"));
        f.click(f.inEntry(1, "deleteMark"));

        // then
        QVERIFY(f.item("elsewhere")->hasActiveFocus());

        // given a form in which a name is half typed
        f.click("plusButton");
        f.type(u"Mø"_s);

        // when
        f.click(f.inEntry(0, "templateButton"));
        f.type(u"de"_s);

        // then
        QCOMPARE(f.text(f.item("nameField")), u"Møde"_s);
    }

    void shouldBeUsableByKeyAlone()
    {
        // given
        Fixture f(2);

        // when
        f.press(Qt::Key_Tab);

        // then
        QVERIFY(f.item("plusButton")->hasActiveFocus());

        // when
        f.press(Qt::Key_Tab);

        // then
        QVERIFY(f.inEntry(0, "templateButton")->hasActiveFocus());
        QVERIFY(f.entries().at(0)->property("isHovered").toBool());

        // when
        f.press(Qt::Key_Space);

        // then
        QCOMPARE(f.added(), QStringList{u"Skabelon 1"_s});

        // when
        f.press(Qt::Key_Tab);

        // then
        QQuickItem *const mark = f.inEntry(0, "deleteMark");
        QVERIFY(mark->hasActiveFocus());
        QVERIFY(f.entries().at(0)->property("isHovered").toBool());
        QCOMPARE(mark->property("contentItem").value<QQuickItem *>()->opacity(), 1.0);

        // when
        f.press(Qt::Key_Space);

        // then
        QCOMPARE(f.names(), QStringList{u"Skabelon 2"_s});
        QTRY_COMPARE(f.entries().size(), 1);

        // when
        f.press(Qt::Key_Down);

        // then the keys are the owner's
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

        // given
        Fixture f(1);
        const double height = f.entries().at(0)->height();
        f.click("plusButton");

        // when
        f.paste(pasted);
        f.press(Qt::Key_Return);

        // then
        QCOMPARE(f.names().last(), stored);
        QTRY_COMPARE(f.entries().size(), 2);
        // on one line, at the left, inside its entry
        const QQuickItem *const label = f.inEntry(1, "nameText");
        QCOMPARE(label->property("lineCount").toInt(), 1);
        QVERIFY(f.entries().at(1)->height() <= height + 6); // fonts of other scripts are higher
        QVERIFY(label->property("contentWidth").toReal() <= label->width());
        QCOMPARE(label->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));

        // when
        f.click(f.inEntry(1, "templateButton"));

        // then
        QCOMPARE(f.added(), QStringList{stored});
    }

    void shouldShowALongNameWholeInATooltip()
    {
        // given
        const QString name = u"En skabelon med et meget langt navn"_s;
        const Fixture f(name);
        const QQuickItem *const label = f.inEntry(0, "nameText");
        QVERIFY(label->property("truncated").toBool());

        // when
        f.hover(label);

        // then
        QTRY_VERIFY(findItem(f.window->contentItem(), u"helpTip"_s));
        QCOMPARE(f.text(findItem(f.window->contentItem(), u"helpTip"_s)), name);
    }

    void shouldScrollItsListAndKeepTheHeader()
    {
        // given
        Fixture f(20, 150);
        const QQuickItem *const list = f.item("sectionList");
        QCOMPARE(f.place(list).bottom(), 150.0 - 12);
        const QRectF header = f.place("sectionHeader");

        // when
        f.scrollDown(centre(list));

        // then
        QTRY_VERIFY(list->property("atYEnd").toBool());
        QCOMPARE(f.place("sectionHeader"), header);
        QCOMPARE(f.shownName(static_cast<int>(f.entries().size()) - 1), u"Skabelon 20"_s);

        // given many more
        Fixture many(1000, 150);

        // then the list is built as far as it is seen, or nearly
        QVERIFY(many.entries().size() < 40);
    }

    void shouldScrollToANewTemplate()
    {
        // given
        Fixture f(20, 150);
        f.click("plusButton");
        f.type(u"Ny"_s);

        // when
        f.press(Qt::Key_Return);

        // then
        QTRY_COMPARE(f.shownName(static_cast<int>(f.entries().size()) - 1), u"Ny"_s);
        QVERIFY(f.place(f.entries().last()).bottom() <= f.place("sectionList").bottom());
    }

    void shouldScrollAsAWholeWhenItsShareIsTooSmall()
    {
        // given
        Fixture f(3, 40);
        QCOMPARE(f.place("sectionList").height(), 26.0);

        // when
        f.click("plusButton");

        // then the field has the focus, so it is in sight
        QVERIFY(f.item("section")->property("contentHeight").toReal() > 40);
        QVERIFY(f.place("nameField").top() >= 0);
        QVERIFY(f.place("nameField").bottom() <= 40);

        // when
        f.click("cancelButton");

        // then
        QVERIFY(!f.maybe("nameField"));

        // when
        f.scrollDown({90, 6});

        // then an entry is brought into sight
        QTRY_VERIFY(f.item("section")->property("atYEnd").toBool());
        QVERIFY(f.place(f.entries().at(0)).bottom() <= 40);

        // when
        f.click(f.inEntry(0, "templateButton"));

        // then
        QCOMPARE(f.added(), QStringList{u"Skabelon 1"_s});
        // and nothing is drawn outside of the share
        QCOMPARE(f.window->colorAt({90, 60}), Theme().controlBackground());
    }

    void shouldBringWhatTabReachesIntoSight()
    {
        // given
        Fixture f(20, 60);

        // then each stop is in sight
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
        // given
        Fixture f(2);
        QQuickItem *const entry = f.entries().at(0);
        f.hover(entry);
        QTRY_VERIFY(entry->property("isHovered").toBool());

        // when
        f.store.insert<TaskTemplate>(u"Ny"_s, 5);

        // then
        QTRY_COMPARE(f.entries().size(), 3);
        QCOMPARE(f.entries().at(0), entry);
        QVERIFY(entry->property("isHovered").toBool());
    }

    void shouldFollowTheStoreWithoutBeingAsked()
    {
        // given
        Fixture f(1);

        // when
        const auto *const made = f.store.insert<TaskTemplate>(u"a"_s, -1);

        // then
        QTRY_COMPARE(f.entries().size(), 2);
        QCOMPARE(f.shownName(0), u"a"_s);

        // when
        f.store.context().remove(const_cast<TaskTemplate *>(made));

        // then
        QTRY_COMPARE(f.entries().size(), 1);
    }

    void shouldNameItsControls()
    {
        // given
        Fixture f(1);
        const auto expect = [&](QQuickItem *item, QAccessible::Role role, const QString &name) {
            QVERIFY(f.accessible(item));
            QCOMPARE(f.accessible(item)->role(), role);
            QCOMPARE(f.accessibleName(item), name);
            QVERIFY(!f.accessible(item)->state().invisible);
        };

        // then
        expect(f.item("sectionTitle"), QAccessible::StaticText, u"Skabeloner"_s);
        expect(f.item("plusButton"), QAccessible::Button, u"Ny skabelon"_s);
        expect(f.item("sectionList"), QAccessible::List, u"Skabeloner"_s);
        expect(f.entries().at(0), QAccessible::ListItem, u"Skabelon 1"_s);
        expect(f.inEntry(0, "templateButton"), QAccessible::Button, u"Skabelon 1"_s);
        // though it is not drawn
        expect(f.inEntry(0, "deleteMark"), QAccessible::Button, u"Slet skabelon Skabelon 1"_s);

        // when
        f.pressAccessibly(f.item("plusButton"));

        // then
        expect(f.item("nameField"), QAccessible::EditableText, u"Navn"_s);
        expect(f.item("addButton"), QAccessible::Button, u"Tilføj skabelon"_s);
        expect(f.item("cancelButton"), QAccessible::Button, u"Annuller"_s);

        // when
        f.pressAccessibly(f.item("addButton"));

        // then
        QVERIFY(f.maybe("nameField"));

        // when
        f.type(u"Møde"_s);
        f.pressAccessibly(f.item("addButton"));

        // then
        QCOMPARE(f.names(), (QStringList{u"Skabelon 1"_s, u"Møde"_s}));

        // when
        f.pressAccessibly(f.item("plusButton"));
        f.pressAccessibly(f.item("cancelButton"));

        // then
        QVERIFY(!f.maybe("nameField"));

        // when
        f.pressAccessibly(f.inEntry(0, "templateButton"));

        // then
        QCOMPARE(f.added(), QStringList{u"Skabelon 1"_s});

        // when
        f.pressAccessibly(f.inEntry(0, "deleteMark"));

        // then
        QCOMPARE(f.names(), QStringList{u"Møde"_s});

        // when
        f.pressAccessibly(f.inEntry(0, "deleteMark"));

        // then
        QTRY_VERIFY(f.item("emptyText")->isVisible());
        expect(f.item("emptyText"), QAccessible::StaticText, u"Ingen skabeloner"_s);
    }
};

QTEST_MAIN(TestTemplateListView)
#include "tst_templatelistview.moc"
