#pragma once

#include <QObject>
#include <QVariantMap>

/// What the desktop can ask of the program over the bus. The methods' names are the interface's.
class ApplicationObject : public QObject
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")

public Q_SLOTS:
    void Activate(const QVariantMap &platformData);
    /// There is nothing to open but the window.
    void Open(const QStringList &uris, const QVariantMap &platformData);
    /// The one action is "quit".
    void ActivateAction(const QString &name, const QVariantList &parameters,
                        const QVariantMap &platformData);

Q_SIGNALS:
    void activated(const QString &activationToken);
    void quitRequested();
};
