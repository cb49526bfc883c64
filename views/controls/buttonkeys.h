#pragma once

#include <QObject>
#include <QQmlParserStatus>
#include <QtQmlIntegration/qqmlintegration.h>

/// Sees to it that the button that it is declared in is pressed by Space and by no other key. Which
/// other keys would press it (Return, Space with Ctrl) depends on the desktop and on Qt's version;
/// they are passed on to the view around the button. Repetitions of a held Space are swallowed.
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
