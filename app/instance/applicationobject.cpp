#include "app/instance/applicationobject.h"

#include "app/instance/starttokens.h"

using namespace Qt::StringLiterals;

void ApplicationObject::Activate(const QVariantMap &platformData)
{
    const StartTokens tokens{platformData.value(u"activation-token"_s).toString(),
                             platformData.value(u"desktop-startup-id"_s).toString()};
    Q_EMIT activated(tokens.preferred());
}

void ApplicationObject::Open(const QStringList &, const QVariantMap &platformData)
{
    Activate(platformData);
}

void ApplicationObject::ActivateAction(const QString &name, const QVariantList &,
                                       const QVariantMap &)
{
    if (name == "quit"_L1)
        Q_EMIT quitRequested();
}
