#pragma once

#include <QObject>
#include <QPointer>
#include <QVariantMap>
#include <QtQmlIntegration/qqmlintegration.h>

/// What the item that it is declared in has only while it is needed, which most never do.
class LazyPart : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(bool isNeeded MEMBER m_isNeeded NOTIFY changed)

Q_SIGNALS:
    void changed();

protected:
    /// The part is made of this folder's QML file @p file.
    LazyPart(const QString &file, QObject *parent);

    /// The part's properties, besides its parent.
    virtual QVariantMap properties() const = 0;

private:
    void follow();

    const QString m_file;
    bool m_isNeeded = false;
    QPointer<QObject> m_part;
};

/// A tooltip. It appears 600 ms after it has become needed.
class LazyHelpTip : public LazyPart
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QString text MEMBER m_text NOTIFY changed)

public:
    explicit LazyHelpTip(QObject *parent = nullptr);

private:
    QVariantMap properties() const override;

    QString m_text;
};

/// A ring around the item, whose corner radius is @c radius: for when the keyboard has brought the
/// focus there.
class LazyFocusRing : public LazyPart
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal radius MEMBER m_radius NOTIFY changed)

public:
    explicit LazyFocusRing(QObject *parent = nullptr);

private:
    QVariantMap properties() const override;

    qreal m_radius = 0;
};
