#include "model/projectcode.h"
#include "sectionfixture.h"
#include "views/sidebar/projectcodelistviewmodel.h"

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
        // given
        const Fixture f;

        // then
        QCOMPARE(layout::deviations(f.root(),
                                    f.emptySection(u"Projektkoder"_s, u"Ingen projektkoder"_s)),
                 QStringList());
    }

    void shouldLayOutTheForm()
    {
        // given
        const Fixture f(1);

        // when
        f.click("plusButton");

        // then
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"codeField.left"_s, 12 + 8},
                     {u"codeField.width"_s, 60},
                     {u"codeField.top - sectionHeader.bottom"_s, 8},
                     {u"nameField.left - codeField.right"_s, 4},
                     {u"section.right - nameField.right"_s, 12 + 8},
                     {u"nameField.top - codeField.top"_s, 0},
                     {u"addButton.top - codeField.bottom"_s, 4},
                     {u"cancelButton.left - addButton.right"_s, 8},
                     {u"nameField.right - cancelButton.right"_s, 0},
                     {u"sectionList.top - cancelButton.bottom"_s, 8},
                 }),
                 QStringList());
        // clang-format on
        QCOMPARE(layout::deviations(f.root(), f.formField(u"codeField"_s, u"Kode"_s)),
                 QStringList());
        QCOMPARE(layout::deviations(f.root(), f.formField(u"nameField"_s, u"Navn (valgfrit)"_s)),
                 QStringList());
        QCOMPARE(layout::deviations(f.root(), f.formButtons()), QStringList());
        for (const QRectF &field : {f.place("codeField"), f.place("nameField")}) {
            QCOMPARE(f.window->colorAt({field.right() - 3, field.center().y()}),
                     Theme().textBackground());
        }
    }

    void shouldLayOutItsRows()
    {
        // given a code alone, and one with a name
        const Fixture f(2);
        const QList<QQuickItem *> entries = f.entries();

        // then
        QCOMPARE(entries.size(), 2);
        for (int row = 0; row < 2; ++row)
            QCOMPARE(f.place(f.inEntry(row, "entryBackground")), f.place(entries.at(row)));
        const Theme theme;
        // clang-format off
        QCOMPARE(layout::deviations(f.root(), {
                     {u"entryBackground[0].left - sectionList.left"_s, 0},
                     {u"entryBackground[0].top - sectionList.top"_s, 0},
                     {u"entryBackground[0].width"_s, 156},
                     {u"entryBackground[1].top - entryBackground[0].bottom"_s, 2},
                     {u"codeText[0].text"_s, u"470"_s},
                     {u"codeText[0].font.pixelSize"_s, 11},
                     {u"codeText[0].font.weight"_s, QFont::Medium},
                     {u"codeText[0].color"_s, theme.primary()},
                     {u"codeText[0].left - entryBackground[0].left"_s, 8 + 14 + 6},
                     {u"entryBackground[0].right - codeText[0].right"_s, 8 + 6},
                     {u"nameText[0].visible"_s, false},
                     {u"nameText[1].visible"_s, true},
                     {u"nameText[1].text"_s, u"Support"_s},
                     {u"nameText[1].font.pixelSize"_s, 10},
                     {u"nameText[1].color"_s, theme.secondary()},
                     {u"codeText[1].top - entryBackground[1].top"_s, 6},
                     {u"nameText[1].top - codeText[1].bottom"_s, 1},
                     {u"nameText[1].left - codeText[1].left"_s, 0},
                     {u"entryBackground[1].bottom - nameText[1].bottom"_s, 6},
                 }),
                 QStringList());
        // clang-format on
        QCOMPARE(entries.at(0)->height(), std::max(14.0, f.inEntry(0, "codeText")->height()) + 12);
    }

    void shouldMarkTheRowUnderThePointer()
    {
        // given
        const Fixture f(2);
        const QRectF row = f.place(f.entries().at(1));
        const QQuickItem *const background = f.inEntry(1, "entryBackground");

        // when
        f.window->hover((row.bottomRight() - QPointF(3, 3)).toPoint());

        // then
        QTRY_VERIFY(f.entries().at(1)->property("isHovered").toBool());
        QCOMPARE(f.place(background), row);
        QCOMPARE(layout::deviations(f.entries().at(1), f.hoveredEntry(u"nameText"_s, 6 + 6)),
                 QStringList());
        QCOMPARE(f.place(f.entries().at(1)), row);

        // when
        f.window->hover({1, 399});

        // then
        QTRY_VERIFY(!f.entries().at(1)->property("isHovered").toBool());
        QVERIFY(!background->isVisible());
    }

    void shouldDeleteWithoutAskingAndOnlyByTheMark()
    {
        // given
        Fixture f(3);

        // when
        f.click(f.inEntry(1, "codeText"));

        // then
        QCOMPARE(f.names().size(), 3);

        // when
        f.click(f.inEntry(1, "deleteMark"));

        // then
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

        // then
        QCOMPARE(f.names(), (QStringList{u"471"_s, u"472"_s}));
        QTRY_VERIFY(f.entries().at(0)->property("isHovered").toBool());
        QVERIFY(f.place(f.inEntry(0, "deleteMark")).contains(mark));

        // when
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
        // given
        Fixture f;
        f.click("plusButton");

        // then
        QVERIFY(f.item("codeField")->hasActiveFocus());

        // when
        f.type(u" abc "_s);
        f.press(Qt::Key_Return);
        f.press(Qt::Key_Enter);

        // then
        QVERIFY(f.maybe("codeField"));
        QVERIFY(f.item("codeField")->hasActiveFocus());
        QVERIFY(f.names().isEmpty());

        // when
        f.press(Qt::Key_Tab);

        // then
        QVERIFY(f.item("nameField")->hasActiveFocus());

        // when
        f.type(u" Support "_s);
        f.press(Qt::Key_Return);

        // then
        QCOMPARE(f.names(), QStringList{u"abc – Support"_s});
        QVERIFY(!f.maybe("codeField"));
        QTRY_COMPARE(f.entries().size(), 1);
        QCOMPARE(f.text(f.inEntry(0, "codeText")), u"abc"_s);
        QVERIFY(f.keys().isEmpty());
    }

    void shouldAddWithTheCheckmark()
    {
        // given
        Fixture f;
        f.enter(u"4711"_s, u"   "_s);

        // when
        f.click("addButton");

        // then
        QCOMPARE(f.names(), QStringList{u"4711"_s});
        QTRY_COMPARE(f.entries().size(), 1);
        QVERIFY(!f.inEntry(0, "nameText")->isVisible());

        // when the same code is entered again
        f.enter(u"4711"_s, u"Support"_s);
        f.click("addButton");

        // then
        QCOMPARE(f.names(), (QStringList{u"4711"_s, u"4711 – Support"_s}));
        QTRY_COMPARE(f.entries().size(), 2);
    }

    void shouldKeepTheFormOpenWithoutACode()
    {
        // given
        Fixture f;
        f.enter(u"  "_s, u"Support"_s);

        // then
        QVERIFY(!f.item("addButton")->isEnabled());
        QVERIFY(f.item("addButton")->opacity() < 0.6);

        // when
        f.press(Qt::Key_Return);
        f.click("addButton");

        // then
        QVERIFY(f.names().isEmpty());
        QCOMPARE(f.text(f.item("codeField")), u"  "_s);
        QCOMPARE(f.text(f.item("nameField")), u"Support"_s);

        // when
        f.click("codeField");
        f.type(u"1"_s);

        // then
        QVERIFY(f.item("addButton")->isEnabled());
        QCOMPARE(f.item("addButton")->opacity(), 1.0);
    }

    void shouldEmptyBothFieldsWhenPlusIsPressedAgain()
    {
        // given
        Fixture f;
        f.enter(u"4711"_s, u"Support"_s);

        // when
        f.click("plusButton");

        // then
        QCOMPARE(f.text(f.item("codeField")), QString());
        QCOMPARE(f.text(f.item("nameField")), QString());
        QVERIFY(f.item("codeField")->hasActiveFocus());

        // given the form filled again
        f.enter(u"4711"_s, u"Support"_s);

        // when
        f.click("cancelButton");

        // then
        QVERIFY(!f.maybe("codeField"));
        QVERIFY(f.names().isEmpty());

        // when
        f.click("plusButton");

        // then
        QCOMPARE(f.text(f.item("codeField")), QString());
        QCOMPARE(f.text(f.item("nameField")), QString());
    }

    void shouldLeaveEscapeToItsOwner()
    {
        // given
        Fixture f;
        f.enter(u"4711"_s, u"Support"_s);

        // when
        f.press(Qt::Key_Escape);

        // then
        QCOMPARE(f.keys(), QVariantList{int(Qt::Key_Escape)});
        QVERIFY(f.maybe("codeField"));
    }

    void shouldLeaveTheKeyboardToItsOwnerAfterTheFormHasClosed()
    {
        // given
        Fixture f;
        f.enter(u"4711"_s, u"Support"_s);
        f.press(Qt::Key_Return);

        // when
        f.press(Qt::Key_Down);

        // then
        QCOMPARE(f.keys(), QVariantList{int(Qt::Key_Down)});

        // given a form that was cancelled
        f.enter(u"4712"_s, u"Support"_s);
        f.click("cancelButton");

        // when
        f.press(Qt::Key_Up);

        // then
        QCOMPARE(f.keys(), (QVariantList{int(Qt::Key_Down), int(Qt::Key_Up)}));
    }

    void shouldBeUsableByKeyAlone()
    {
        // given
        Fixture f(1);

        // when
        f.press(Qt::Key_Tab);
        f.press(Qt::Key_Space);

        // then
        QVERIFY(f.item("codeField")->hasActiveFocus());

        // when
        f.type(u"4711"_s);
        f.press(Qt::Key_Tab);
        f.press(Qt::Key_Tab);

        // then
        QVERIFY(f.item("addButton")->hasActiveFocus());

        // when
        f.press(Qt::Key_Space);

        // then
        QCOMPARE(f.names(), (QStringList{u"470"_s, u"4711"_s}));

        // when
        f.item("plusButton")->forceActiveFocus(Qt::TabFocusReason);
        f.press(Qt::Key_Tab);

        // then
        QVERIFY(f.inEntry(0, "deleteMark")->hasActiveFocus());
        QVERIFY(f.entries().at(0)->property("isHovered").toBool());

        // when
        f.press(Qt::Key_Space);

        // then
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

        // given
        Fixture f(text, text);
        const QQuickItem *const code = f.inEntry(0, "codeText");
        const QQuickItem *const name = f.inEntry(0, "nameText");

        // then the code is whole, the name on one line
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
        // given
        const QString name = u"Support for en meget stor kunde"_s;
        const Fixture f(u"4711"_s, name);

        // when
        f.hover(f.inEntry(0, "nameText"));

        // then
        QTRY_VERIFY(findItem(f.window->contentItem(), u"helpTip"_s));
        QCOMPARE(f.text(findItem(f.window->contentItem(), u"helpTip"_s)), name);
    }

    void shouldScrollAsAWholeWhenItsShareIsTooSmall()
    {
        // given
        Fixture f(3, 50);
        f.click("plusButton");
        f.type(u"4711"_s);

        // when
        f.scrollDown({90, 6});

        // then
        QTRY_VERIFY(f.place("cancelButton").bottom() <= 50);
        QTRY_VERIFY(!f.item("section")->property("moving").toBool());

        // when
        f.click("addButton");

        // then
        QCOMPARE(f.names().size(), 4);
        // the page goes back to where the content now ends
        QTRY_VERIFY(f.item("section")->property("contentY").toReal() <=
                    f.item("section")->property("contentHeight").toReal() - 50);
    }

    void shouldNameItsControls()
    {
        // given
        Fixture f(u"4711"_s, u"Support"_s);
        const auto expect = [&](QQuickItem *item, QAccessible::Role role, const QString &name) {
            QVERIFY(f.accessible(item));
            QCOMPARE(f.accessible(item)->role(), role);
            QCOMPARE(f.accessibleName(item), name);
            QVERIFY(!f.accessible(item)->state().invisible);
        };

        // then
        expect(f.item("plusButton"), QAccessible::Button, u"Ny projektkode"_s);
        expect(f.item("sectionList"), QAccessible::List, u"Projektkoder"_s);
        expect(f.entries().at(0), QAccessible::ListItem, u"4711 – Support"_s);
        expect(f.inEntry(0, "codeText"), QAccessible::StaticText, u"4711"_s);
        expect(f.inEntry(0, "nameText"), QAccessible::StaticText, u"Support"_s);
        expect(f.inEntry(0, "deleteMark"), QAccessible::Button, u"Slet projektkode 4711"_s);

        // when
        f.pressAccessibly(f.item("plusButton"));

        // then
        expect(f.item("codeField"), QAccessible::EditableText, u"Kode"_s);
        expect(f.item("nameField"), QAccessible::EditableText, u"Navn (valgfrit)"_s);
        expect(f.item("addButton"), QAccessible::Button, u"Tilføj projektkode"_s);
        expect(f.item("cancelButton"), QAccessible::Button, u"Annuller"_s);

        // when
        f.pressAccessibly(f.item("cancelButton"));

        // then
        QVERIFY(!f.maybe("codeField"));

        // when
        f.pressAccessibly(f.inEntry(0, "deleteMark"));

        // then
        QVERIFY(f.names().isEmpty());
        QTRY_VERIFY(f.item("emptyText")->isVisible());
    }
};

QTEST_MAIN(TestProjectCodeListView)
#include "tst_projectcodelistview.moc"
