#include "model/projectcode.h"
#include "sectionfixture.h"
#include "views/sidebar/projectcodelistviewmodel.h"

#include <cmath>

using namespace Qt::StringLiterals;
using qmltest::findItem;

/// The project codes section, used with mouse and keys.
class TestProjectCodeListView : public QObject
{
    Q_OBJECT

private:
    struct Fixture : SectionFixture {
        /// Every second code has a name.
        explicit Fixture(int count = 0, int height = 300)
        {
            for (int i = 0; i < count; ++i)
                store.insert<ProjectCode>(u"47%1"_s.arg(i), i % 2 ? u"Support"_s : QString(), i);
            show<ProjectCodeListViewModel>("ProjectCodeListView", height);
        }
        Fixture(const QString &code, const QString &name)
        {
            store.insert<ProjectCode>(code, name, 0);
            show<ProjectCodeListViewModel>("ProjectCodeListView", 300);
        }

        QStringList names()
        {
            QStringList names;
            for (const ProjectCode *each : records<ProjectCode>())
                names << each->displayName();
            return names;
        }
        void enter(const QString &code, const QString &name)
        {
            click("plusButton");
            type(code);
            click("nameField");
            type(name);
        }
    };

private Q_SLOTS:
    void shouldLayOutHeaderAndEmptyText()
    {
        const Fixture f;
        QCOMPARE(f.text(f.item("sectionTitle")), u"Projektkoder"_s);
        QCOMPARE(f.font(f.item("sectionTitle")).pixelSize(), 12);
        QCOMPARE(f.font(f.item("sectionTitle")).weight(), QFont::DemiBold);
        QCOMPARE(f.color(f.item("sectionTitle")), Theme().secondary());
        QCOMPARE(f.place("sectionTitle").left(), 12.0 + 8);
        QCOMPARE(f.place("plusButton").right(), 180.0 - 12 - 8);
        QVERIFY(f.item("emptyText")->isVisible());
        QCOMPARE(f.text(f.item("emptyText")), u"Ingen projektkoder"_s);
        QCOMPARE(f.font(f.item("emptyText")).pixelSize(), 11);
        QCOMPARE(f.color(f.item("emptyText")), Theme().tertiary());
        QCOMPARE(f.place("emptyText").left(), 12.0 + 8);
        QCOMPARE(f.place("emptyText").top(), f.place("sectionHeader").bottom() + 8);
    }

    void shouldLayOutTheForm()
    {
        const Fixture f(1);
        f.click("plusButton");
        const QRectF code = f.place("codeField");
        const QRectF name = f.place("nameField");
        const QRectF add = f.place("addButton");
        const QRectF cancel = f.place("cancelButton");
        QCOMPARE(code.left(), 12.0 + 8);
        QCOMPARE(code.width(), 60.0);
        QCOMPARE(code.top(), f.place("sectionHeader").bottom() + 8);
        QCOMPARE(name.left(), code.right() + 4);
        QCOMPARE(name.right(), 180.0 - 12 - 8);
        QCOMPARE(name.top(), code.top());
        QCOMPARE(add.top(), code.bottom() + 4);
        QCOMPARE(cancel.right(), name.right());
        QCOMPARE(add.right() + 8, cancel.left());
        QCOMPARE(f.place("sectionList").top(), cancel.bottom() + 8);
        for (const auto &[field, placeholder] :
             {std::pair{"codeField", u"Kode"_s}, std::pair{"nameField", u"Navn (valgfrit)"_s}}) {
            const QQuickItem *const item = f.item(field);
            QCOMPARE(item->property("placeholderText").toString(), placeholder);
            QCOMPARE(f.font(item).pixelSize(), 11);
            QCOMPARE(item->property("leftPadding").toInt(), 6);
            QCOMPARE(item->property("rightPadding").toInt(), 6);
            QCOMPARE(item->height(), item->property("contentHeight").toReal() + 8);
            QCOMPARE(f.window->colorAt({f.place(item).right() - 3, f.place(item).center().y()}),
                     Theme().textBackground());
        }
        for (const auto &[button, symbol, color] :
             {std::tuple{"addButton", u"checkmark"_s, Theme().green()},
              std::tuple{"cancelButton", u"xmark"_s, Theme().red()}}) {
            QCOMPARE(f.item(button)->property("symbol").toString(), symbol);
            QCOMPARE(f.item(button)->property("symbolSize").toInt(), 9);
            QCOMPARE(f.item(button)->property("symbolColor").value<QColor>(), color);
        }
    }

    void shouldLayOutItsRows()
    {
        const Fixture f(2);
        const QRectF list = f.place("sectionList");
        QCOMPARE(f.entries().size(), 2);
        const QRectF first = f.place(f.entries().at(0));
        const QRectF second = f.place(f.entries().at(1));
        QCOMPARE(first.topLeft(), list.topLeft());
        QCOMPARE(first.width(), 156.0);
        QCOMPARE(second.top(), first.bottom() + 2);

        // the code alone
        const QQuickItem *const code = f.inEntry(0, "codeText");
        QCOMPARE(f.text(code), u"470"_s);
        QCOMPARE(f.font(code).pixelSize(), 11);
        QCOMPARE(f.font(code).weight(), QFont::Medium);
        QCOMPARE(f.color(code), Theme().primary());
        QVERIFY(!f.inEntry(0, "nameText")->isVisible());
        QCOMPARE(f.place(code).left(), first.left() + 8 + 14 + 6);
        QCOMPARE(f.place(code).right(), first.right() - 8 - 6);
        QCOMPARE(first.height(), std::max(14.0, code->height()) + 12);

        // code and name
        const QRectF above = f.place(f.inEntry(1, "codeText"));
        const QQuickItem *const name = f.inEntry(1, "nameText");
        QVERIFY(name->isVisible());
        QCOMPARE(f.text(name), u"Support"_s);
        QCOMPARE(f.font(name).pixelSize(), 10);
        QCOMPARE(f.color(name), Theme().secondary());
        QCOMPARE(above.top(), second.top() + 6);
        QCOMPARE(f.place(name).top(), above.bottom() + 1);
        QCOMPARE(f.place(name).left(), above.left());
        QCOMPARE(second.bottom(), f.place(name).bottom() + 6);
    }

    void shouldMarkTheRowUnderThePointer()
    {
        const Fixture f(2);
        const QRectF row = f.place(f.entries().at(1));
        f.window->hover((row.bottomRight() - QPointF(3, 3)).toPoint());
        QTRY_VERIFY(f.entries().at(1)->property("isHovered").toBool());
        const QQuickItem *const background = f.inEntry(1, "entryBackground");
        QVERIFY(background->isVisible());
        QCOMPARE(background->opacity(), 0.15);
        QCOMPARE(f.color(background), Theme().brandAccent());
        QCOMPARE(background->property("radius").toInt(), 4);
        const QQuickItem *const mark = f.inEntry(1, "deleteMark");
        QCOMPARE(f.place(mark).right(), row.right() - 8);
        QVERIFY(std::abs(f.place(mark).center().y() - row.center().y()) <= 0.5);
        QCOMPARE(f.place(f.inEntry(1, "nameText")).right() + 6 + 6, f.place(mark).left());
        QCOMPARE(f.place(f.entries().at(1)), row);
        f.window->hover({1, 399});
        QTRY_VERIFY(!f.entries().at(1)->property("isHovered").toBool());
        QVERIFY(!background->isVisible());
    }

    void shouldDeleteWithoutAskingAndOnlyByTheMark()
    {
        Fixture f(3);
        f.click(f.inEntry(1, "codeText"));
        QCOMPARE(f.names().size(), 3);
        f.click(f.inEntry(1, "deleteMark"));
        QCOMPARE(f.names(), (QStringList{u"470"_s, u"472"_s}));
        QTRY_COMPARE(f.entries().size(), 2);
        QVERIFY(f.item("elsewhere")->hasActiveFocus());
    }

    void shouldDeleteOnlyOneByADoubleClick()
    {
        // given rows of one height, so that the next mark comes to where the first one was
        Fixture f;
        for (int i = 0; i < 3; ++i)
            f.store.insert<ProjectCode>(u"47%1"_s.arg(i), QString(), i);
        QTRY_COMPARE(f.entries().size(), 3);
        const QPoint mark = qmltest::centre(f.inEntry(0, "deleteMark"));
        f.window->hover(mark);
        QTRY_VERIFY(f.entries().at(0)->property("isHovered").toBool());
        const auto clickAt = [&](quint64 time) {
            for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
                QMouseEvent event(type, mark, mark, f.window->mapToGlobal(mark), Qt::LeftButton,
                                  type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton,
                                  {});
                event.setTimestamp(time);
                QCoreApplication::sendEvent(f.window.get(), &event);
            }
        };

        // when
        clickAt(1'000'000);
        QCOMPARE(f.names(), (QStringList{u"471"_s, u"472"_s}));
        QTRY_VERIFY(f.entries().at(0)->property("isHovered").toBool());
        QVERIFY(f.place(f.inEntry(0, "deleteMark")).contains(mark));
        clickAt(1'000'100);

        // then
        QCOMPARE(f.names(), (QStringList{u"471"_s, u"472"_s}));
    }

    void shouldDrawNoDeleteMarkWithoutThePointer()
    {
        // given
        const Fixture f(2);
        const QRectF place = f.place(f.inEntry(0, "deleteMark"));
        const QPointF onDisc(place.center().x(), place.top() + 3);
        QCOMPARE(f.window->colorAt(onDisc), Theme().controlBackground());

        // when
        f.hover(f.entries().at(0));

        // then it stands out from the row's background, too
        const QPointF besideDisc(place.left() - 4, onDisc.y());
        QTRY_VERIFY(f.window->colorAt(onDisc) != f.window->colorAt(besideDisc));

        // when
        f.hover(f.entries().at(1));

        // then
        QTRY_COMPARE(f.window->colorAt(onDisc), Theme().controlBackground());
    }

    void shouldAddWithReturnInTheNameFieldAndNotInTheCodeField()
    {
        Fixture f;
        f.click("plusButton");
        QVERIFY(f.item("codeField")->hasActiveFocus());
        f.type(u" abc "_s);
        f.press(Qt::Key_Return);
        f.press(Qt::Key_Enter);
        QVERIFY(f.maybe("codeField"));
        QVERIFY(f.item("codeField")->hasActiveFocus());
        QVERIFY(f.names().isEmpty());
        f.press(Qt::Key_Tab);
        QVERIFY(f.item("nameField")->hasActiveFocus());
        f.type(u" Support "_s);
        f.press(Qt::Key_Return);
        QCOMPARE(f.names(), QStringList{u"abc – Support"_s});
        QVERIFY(!f.maybe("codeField"));
        QTRY_COMPARE(f.entries().size(), 1);
        QCOMPARE(f.text(f.inEntry(0, "codeText")), u"abc"_s);
        QVERIFY(f.keys().isEmpty());
    }

    void shouldAddWithTheCheckmark()
    {
        Fixture f;
        f.enter(u"4711"_s, u"   "_s);
        f.click("addButton");
        QCOMPARE(f.names(), QStringList{u"4711"_s});
        QTRY_COMPARE(f.entries().size(), 1);
        QVERIFY(!f.inEntry(0, "nameText")->isVisible());
        // the same code again
        f.enter(u"4711"_s, u"Support"_s);
        f.click("addButton");
        QCOMPARE(f.names(), (QStringList{u"4711"_s, u"4711 – Support"_s}));
        QTRY_COMPARE(f.entries().size(), 2);
    }

    void shouldKeepTheFormOpenWithoutACode()
    {
        Fixture f;
        f.enter(u"  "_s, u"Support"_s);
        QVERIFY(!f.item("addButton")->isEnabled());
        QVERIFY(f.item("addButton")->opacity() < 0.6);
        f.press(Qt::Key_Return);
        f.click("addButton");
        QVERIFY(f.names().isEmpty());
        QCOMPARE(f.text(f.item("codeField")), u"  "_s);
        QCOMPARE(f.text(f.item("nameField")), u"Support"_s);
        f.click("codeField");
        f.type(u"1"_s);
        QVERIFY(f.item("addButton")->isEnabled());
        QCOMPARE(f.item("addButton")->opacity(), 1.0);
    }

    void shouldEmptyBothFieldsWhenPlusIsPressedAgain()
    {
        Fixture f;
        f.enter(u"4711"_s, u"Support"_s);
        f.click("plusButton");
        QCOMPARE(f.text(f.item("codeField")), QString());
        QCOMPARE(f.text(f.item("nameField")), QString());
        QVERIFY(f.item("codeField")->hasActiveFocus());
        f.enter(u"4711"_s, u"Support"_s);
        f.click("cancelButton");
        QVERIFY(!f.maybe("codeField"));
        QVERIFY(f.names().isEmpty());
        f.click("plusButton");
        QCOMPARE(f.text(f.item("codeField")), QString());
        QCOMPARE(f.text(f.item("nameField")), QString());
    }

    void shouldLeaveEscapeToItsOwner()
    {
        Fixture f;
        f.enter(u"4711"_s, u"Support"_s);
        f.press(Qt::Key_Escape);
        QCOMPARE(f.keys(), QVariantList{int(Qt::Key_Escape)});
        QVERIFY(f.maybe("codeField"));
    }

    void shouldLeaveTheKeyboardToItsOwnerAfterTheFormHasClosed()
    {
        Fixture f;
        f.enter(u"4711"_s, u"Support"_s);
        f.press(Qt::Key_Return);
        f.press(Qt::Key_Down);
        QCOMPARE(f.keys(), QVariantList{int(Qt::Key_Down)});
        f.enter(u"4712"_s, u"Support"_s);
        f.click("cancelButton");
        f.press(Qt::Key_Up);
        QCOMPARE(f.keys(), (QVariantList{int(Qt::Key_Down), int(Qt::Key_Up)}));
    }

    void shouldBeUsableByKeyAlone()
    {
        Fixture f(1);
        f.press(Qt::Key_Tab);
        f.press(Qt::Key_Space);
        QVERIFY(f.item("codeField")->hasActiveFocus());
        f.type(u"4711"_s);
        f.press(Qt::Key_Tab);
        f.press(Qt::Key_Tab);
        QVERIFY(f.item("addButton")->hasActiveFocus());
        f.press(Qt::Key_Space);
        QCOMPARE(f.names(), (QStringList{u"470"_s, u"4711"_s}));
        f.item("plusButton")->forceActiveFocus(Qt::TabFocusReason);
        f.press(Qt::Key_Tab);
        QVERIFY(f.inEntry(0, "deleteMark")->hasActiveFocus());
        QVERIFY(f.entries().at(0)->property("isHovered").toBool());
        f.press(Qt::Key_Space);
        QCOMPARE(f.names(), QStringList{u"4711"_s});
    }

    void shouldShowUnusualTextsInOrder_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("line breaks") << u"Kunde\nA/S"_s;
        QTest::newRow("emoji") << u"👩‍💻 🇩🇰"_s;
        QTest::newRow("right to left") << u"اجتماع"_s;
        QTest::newRow("ten thousand letters") << QString(10000, u'å');
        QTest::newRow("ten thousand words") << u"ord "_s.repeated(2500).trimmed();
        QTest::newRow("markup") << u"<b>4711</b>"_s;
    }
    void shouldShowUnusualTextsInOrder()
    {
        QFETCH(QString, text);
        Fixture f(text, text);
        const QQuickItem *const code = f.inEntry(0, "codeText");
        const QQuickItem *const name = f.inEntry(0, "nameText");
        // the code whole, the name on one line
        QCOMPARE(f.text(code), text);
        QVERIFY(!code->property("truncated").toBool());
        QVERIFY(code->property("contentWidth").toReal() <= code->width());
        QCOMPARE(name->property("lineCount").toInt(), 1);
        QVERIFY(name->property("contentWidth").toReal() <= name->width());
        QCOMPARE(code->property("effectiveHorizontalAlignment").toInt(), int(Qt::AlignLeft));
        QCOMPARE(f.place(name).top(), f.place(code).bottom() + 1);
        QCOMPARE(f.entries().at(0)->height(), code->height() + 1 + name->height() + 12);
    }

    void shouldShowALongNameWholeInATooltip()
    {
        const QString name = u"Support for en meget stor kunde"_s;
        const Fixture f(u"4711"_s, name);
        f.hover(f.inEntry(0, "nameText"));
        QTRY_VERIFY(findItem(f.window->contentItem(), u"helpTip"_s));
        QCOMPARE(f.text(findItem(f.window->contentItem(), u"helpTip"_s)), name);
    }

    void shouldScrollAsAWholeWhenItsShareIsTooSmall()
    {
        Fixture f(3, 50);
        f.click("plusButton");
        f.type(u"4711"_s);
        f.scrollDown({90, 6});
        QTRY_VERIFY(f.place("cancelButton").bottom() <= 50);
        QTRY_VERIFY(!f.item("section")->property("moving").toBool());
        f.click("addButton");
        QCOMPARE(f.names().size(), 4);
        // the page goes back to where the content now ends
        QTRY_VERIFY(f.item("section")->property("contentY").toReal() <=
                    f.item("section")->property("contentHeight").toReal() - 50);
    }

    void shouldNameItsControls()
    {
        Fixture f(u"4711"_s, u"Support"_s);
        const auto expect = [&](QQuickItem *item, QAccessible::Role role, const QString &name) {
            QVERIFY(f.accessible(item));
            QCOMPARE(f.accessible(item)->role(), role);
            QCOMPARE(f.accessibleName(item), name);
            QVERIFY(!f.accessible(item)->state().invisible);
        };
        expect(f.item("plusButton"), QAccessible::Button, u"Ny projektkode"_s);
        expect(f.item("sectionList"), QAccessible::List, u"Projektkoder"_s);
        expect(f.entries().at(0), QAccessible::ListItem, u"4711 – Support"_s);
        expect(f.inEntry(0, "codeText"), QAccessible::StaticText, u"4711"_s);
        expect(f.inEntry(0, "nameText"), QAccessible::StaticText, u"Support"_s);
        expect(f.inEntry(0, "deleteMark"), QAccessible::Button, u"Slet projektkode 4711"_s);
        f.pressAccessibly(f.item("plusButton"));
        expect(f.item("codeField"), QAccessible::EditableText, u"Kode"_s);
        expect(f.item("nameField"), QAccessible::EditableText, u"Navn (valgfrit)"_s);
        expect(f.item("addButton"), QAccessible::Button, u"Tilføj projektkode"_s);
        expect(f.item("cancelButton"), QAccessible::Button, u"Annuller"_s);
        f.pressAccessibly(f.item("cancelButton"));
        QVERIFY(!f.maybe("codeField"));
        f.pressAccessibly(f.inEntry(0, "deleteMark"));
        QVERIFY(f.names().isEmpty());
        QTRY_VERIFY(f.item("emptyText")->isVisible());
    }
};

QTEST_MAIN(TestProjectCodeListView)
#include "tst_projectcodelistview.moc"
