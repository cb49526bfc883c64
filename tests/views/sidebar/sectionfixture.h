#pragma once

#include "model/livequery.h"
#include "tests/support/layout.h"
#include "tests/support/qmltest.h"
#include "tests/support/teststore.h"
#include "views/controls/theme.h"
#include "views/sidebar/sectionviewmodel.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QQuickItem>
#include <QTest>
#include <QWheelEvent>

#include <algorithm>

/// A section in a window, 180 wide, with a focus to return to. A signal `addTask` of its view-model
/// is written down, as is Escape.
class SectionFixture
{
public:
    /// @p section is the QML type of @p ViewModel's view. The section gets @p height, the window is
    /// higher.
    template<class ViewModel>
    void show(const QByteArray &section, int height)
    {
        viewModel = std::make_unique<ViewModel>(store.context());
        window = std::make_unique<qmltest::Window>(
            QByteArray(R"(
                import QtQuick
                import TimeTracker.Views.Controls
                import TimeTracker.Views.Sidebar
                Rectangle {
                    id: root
                    required property SectionViewModel viewModel
                    required property double sectionHeight
                    property var added: []
                    property var keys: []
                    color: Theme.controlBackground
                    FocusScope {
                        anchors.fill: parent
                        focus: true
                        Keys.onPressed: event => {
                            if (event.key !== Qt.Key_Tab)
                                root.keys = root.keys.concat(event.key);
                        }
                        Item { objectName: "elsewhere"; focus: true }
                        %1 {
                            objectName: "section"
                            width: 180
                            height: root.sectionHeight
                            viewModel: root.viewModel
                            Component.onCompleted: if (viewModel.addTask)
                                viewModel.addTask.connect(name => root.added = root.added.concat(name))
                        }
                    }
                })")
                .replace("%1", section),
            QSize(180, 400),
            QVariantMap{{QStringLiteral("viewModel"),
                         QVariant::fromValue<SectionViewModel *>(viewModel.get())},
                        {QStringLiteral("sectionHeight"), height}});
        window->hover({1, 399});
    }

    QQuickItem *root() const { return window->rootObject(); }
    QQuickItem *item(const char *name) const { return window->item(QString::fromLatin1(name)); }
    /// The item of that name, or null.
    QQuickItem *maybe(const char *name) const
    {
        return qmltest::findItem(root(), QString::fromLatin1(name));
    }
    static QRectF place(const QQuickItem *item)
    {
        return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
    }
    QRectF place(const char *name) const { return place(item(name)); }
    static QString text(const QQuickItem *item) { return item->property("text").toString(); }

    /// The layout of the header and of what stands in the place of a list without records.
    static QList<layout::Line> emptySection(const QString &title, const QString &emptyText)
    {
        using namespace Qt::StringLiterals;
        const Theme theme;
        return {
            {u"section.right"_s, 180},
            {u"sectionTitle.text"_s, title},
            {u"sectionTitle.font.pixelSize"_s, 12},
            {u"sectionTitle.font.weight"_s, QFont::DemiBold},
            {u"sectionTitle.color"_s, theme.secondary()},
            {u"sectionTitle.left"_s, 12 + 8},
            {u"section.right - plusButton.right"_s, 12 + 8},
            {u"plusButton.centreY - sectionTitle.centreY"_s, 0},
            {u"plusButton.symbol"_s, u"plus"_s},
            {u"plusButton.symbolSize"_s, 10},
            {u"plusButton.symbolColor"_s, theme.brandAccent()},
            {u"sectionList.visible"_s, false},
            {u"emptyText.visible"_s, true},
            {u"emptyText.text"_s, emptyText},
            {u"emptyText.font.pixelSize"_s, 11},
            {u"emptyText.color"_s, theme.tertiary()},
            {u"emptyText.left"_s, 12 + 8},
            {u"section.right - emptyText.right"_s, 12 + 8},
            {u"emptyText.top - sectionHeader.bottom"_s, 8},
            {u"section.implicitHeight - emptyText.bottom"_s, 12},
        };
    }
    /// What the fields of all forms have in common.
    static QList<layout::Line> formField(const QString &name, const QString &placeholder)
    {
        using namespace Qt::StringLiterals;
        return {
            {name + u".placeholderText"_s, placeholder},
            {name + u".font.pixelSize"_s, 11},
            {name + u".leftPadding"_s, 6},
            {name + u".rightPadding"_s, 6},
            {name + u".topPadding"_s, 4},
            {name + u".bottomPadding"_s, 4},
            {u"%1.height - %1.contentHeight"_s.arg(name), 8},
        };
    }
    /// What the buttons of all forms have in common.
    static QList<layout::Line> formButtons()
    {
        using namespace Qt::StringLiterals;
        const Theme theme;
        return {
            {u"addButton.symbol"_s, u"checkmark"_s},
            {u"addButton.symbolSize"_s, 9},
            {u"addButton.symbolColor"_s, theme.green()},
            {u"cancelButton.symbol"_s, u"xmark"_s},
            {u"cancelButton.symbolSize"_s, 9},
            {u"cancelButton.symbolColor"_s, theme.red()},
        };
    }
    /// The layout of an entry under the pointer. Its @p content ends @p gap before the mark.
    static QList<layout::Line> hoveredEntry(const QString &content, int gap)
    {
        using namespace Qt::StringLiterals;
        const Theme theme;
        QColor markColor = theme.secondary();
        markColor.setAlphaF(0.6F);
        return {
            {u"entryBackground.visible"_s, true},
            {u"entryBackground.opacity"_s, 0.15},
            {u"entryBackground.color"_s, theme.brandAccent()},
            {u"entryBackground.radius"_s, 4},
            {u"entryBackground.right - deleteMark.right"_s, 8},
            {u"deleteMark.centreY - entryBackground.centreY"_s, 0},
            {u"deleteMark.left - %1.right"_s.arg(content), gap},
            {u"deleteMark.symbolSize"_s, 12},
            {u"deleteMark.symbolColor"_s, markColor},
        };
    }

    /// The entries that are there, from top to bottom.
    QList<QQuickItem *> entries() const
    {
        QList<QQuickItem *> entries;
        for (QQuickItem *mark :
             qmltest::findItems(item("sectionList"), QStringLiteral("deleteMark")))
            entries << mark->parentItem();
        std::sort(entries.begin(), entries.end(), [](const QQuickItem *a, const QQuickItem *b) {
            return a->mapToScene({}).y() < b->mapToScene({}).y();
        });
        return entries;
    }
    QQuickItem *inEntry(int row, const char *name) const
    {
        return qmltest::findItem(entries().at(row), QString::fromLatin1(name));
    }

    void click(const QQuickItem *target) const
    {
        QTest::mouseClick(window.get(), Qt::LeftButton, {}, qmltest::centre(target));
    }
    void click(const char *name) const { click(item(name)); }
    void hover(const QQuickItem *target) const { window->hover(qmltest::centre(target)); }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) const
    {
        QTest::keyClick(window.get(), key, modifiers);
    }
    void type(const QString &text) const
    {
        for (const QChar character : text)
            QTest::sendKeyEvent(QTest::Click, window.get(),
                                character == QLatin1Char(' ') ? Qt::Key_Space : Qt::Key_unknown,
                                character, {});
    }
    void paste(const QString &text) const
    {
        QGuiApplication::clipboard()->setText(text);
        QTest::keyClick(window.get(), Qt::Key_V, Qt::ControlModifier);
    }
    /// Turns the mouse wheel far at @p point.
    void scrollDown(const QPoint &point) const
    {
        QWheelEvent wheel(point, window->mapToGlobal(point), {}, {0, -2400}, Qt::NoButton, {},
                          Qt::NoScrollPhase, false);
        wheel.setTimestamp(1'000'000); // later than all clicks
        QCoreApplication::sendEvent(window.get(), &wheel);
    }
    /// The keys that reached what is around the section.
    QVariantList keys() const { return root()->property("keys").toList(); }
    QStringList added() const { return root()->property("added").toStringList(); }

    template<class T>
    QList<T *> records()
    {
        return LiveQuery<T>(store.context(), allRecords(), QueryOrder::SortOrder).results();
    }

    static QAccessibleInterface *accessible(QQuickItem *item)
    {
        return QAccessible::queryAccessibleInterface(item);
    }
    static QString accessibleName(QQuickItem *item)
    {
        return accessible(item)->text(QAccessible::Name);
    }
    static void pressAccessibly(QQuickItem *item)
    {
        accessible(item)->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    }

    qmltest::WarningsAreFailures guard;
    FakeClock clock;
    TestStore store{clock, {std::chrono::hours(1), std::chrono::hours(1)}};
    std::unique_ptr<SectionViewModel> viewModel;
    std::unique_ptr<qmltest::Window> window;
};
