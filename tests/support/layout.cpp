#include "tests/support/layout.h"

#include "tests/support/qmltest.h"

#include <QQmlProperty>
#include <QRegularExpression>

#include <algorithm>
#include <cmath>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

QRectF placeOf(const QQuickItem *item)
{
    return item->mapRectToScene(QRectF(0, 0, item->width(), item->height()));
}

/// The item at a path such as "row[1]/name", or null.
QQuickItem *itemAt(QQuickItem *root, const QString &path)
{
    static const QRegularExpression step(u"^(\\w+)(?:\\[(\\d+)\\])?$"_s);
    const QStringList steps = path.split(u'/');
    for (const QString &each : steps) {
        const QRegularExpressionMatch match = step.match(each);
        if (!match.hasMatch())
            return nullptr;
        QList<QQuickItem *> items = qmltest::findItems(root, match.captured(1));
        std::stable_sort(items.begin(), items.end(), [](QQuickItem *a, QQuickItem *b) {
            const QPointF first = placeOf(a).topLeft();
            const QPointF second = placeOf(b).topLeft();
            return std::pair(first.y(), first.x()) < std::pair(second.y(), second.x());
        });
        root = items.value(match.captured(2).toInt());
    }
    return root;
}

QVariant read(QQuickItem *root, const QString &measure)
{
    QQuickItem *const item = itemAt(root, measure.section(u'.', 0, 0));
    if (!item)
        return {};
    const QString what = measure.section(u'.', 1);
    const QRectF place = placeOf(item);
    const QHash<QString, qreal> numbers{{u"left"_s, place.left()},
                                        {u"right"_s, place.right()},
                                        {u"top"_s, place.top()},
                                        {u"bottom"_s, place.bottom()},
                                        {u"centreX"_s, place.center().x()},
                                        {u"centreY"_s, place.center().y()},
                                        {u"width"_s, place.width()},
                                        {u"height"_s, place.height()}};
    if (numbers.contains(what))
        return numbers.value(what);
    return QQmlProperty::read(item, what);
}

bool isNumber(const QVariant &value)
{
    return value.typeId() != QMetaType::QString && value.typeId() != QMetaType::QColor &&
           value.canConvert<double>();
}

bool holds(const QVariant &actual, const layout::Line &line)
{
    if (!isNumber(line.expected) || !isNumber(actual))
        return actual == line.expected;
    const double tolerance = line.measure.contains(u".centre"_s) ? 0.5 : 0.001;
    return std::abs(actual.toDouble() - line.expected.toDouble()) <= tolerance;
}

} // namespace

QStringList layout::deviations(QQuickItem *root, const QList<Line> &table)
{
    QStringList deviations;
    for (const Line &line : table) {
        const QStringList sides = line.measure.split(u" - "_s);
        QVariant actual = read(root, sides.first());
        if (sides.size() > 1 && actual.isValid()) {
            const QVariant subtrahend = read(root, sides.last());
            actual = subtrahend.isValid() ? actual.toDouble() - subtrahend.toDouble() : QVariant();
        }
        if (!holds(actual, line)) {
            deviations << u"%1 is %2, not %3"_s.arg(
                line.measure, actual.isValid() ? actual.toString() : u"not there"_s,
                line.expected.toString());
        }
    }
    return deviations;
}
