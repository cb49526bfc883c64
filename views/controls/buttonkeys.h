#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

/// Leaves Space alone of the keys that press a button to the button that it is declared in. Which
/// others do (Return, Space with Ctrl) depends on the desktop and on Qt's version; they belong to
/// the view around the button. Repeats of a key held down are swallowed.
class ButtonKeys : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

public:
    using QObject::QObject;

    void classBegin() override {}
    void componentComplete() override;
    bool eventFilter(QObject *watched, QEvent *event) override;
};
