#pragma once

#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQml/qqmlregistration.h>

/// The tooltip of the item that it is declared in. The popup exists only while it is needed: most
/// controls are never pointed at.
class LazyHelpTip : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT

    /// The tooltip's text; none is shown while it is empty.
    Q_PROPERTY(QString text READ text WRITE setText NOTIFY textChanged)
    /// Whether the pointer rests on the item. The tooltip appears 600 ms later.
    Q_PROPERTY(bool isNeeded READ isNeeded WRITE setIsNeeded NOTIFY isNeededChanged)

public:
    using QObject::QObject;

    QString text() const { return m_text; }
    void setText(const QString &text);
    bool isNeeded() const { return m_isNeeded; }
    void setIsNeeded(bool isNeeded);

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void textChanged();
    void isNeededChanged();

private:
    void follow();

    QString m_text;
    bool m_isNeeded = false;
    bool m_isComplete = false;
    QPointer<QObject> m_tip;
};
