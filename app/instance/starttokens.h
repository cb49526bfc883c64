#pragma once

#include <QString>

/// What the desktop gave to who started the program, so that its window may come to the front.
/// Either may be empty.
struct StartTokens {
    QString activationToken;
    QString startupId;

    /// To be read before the application object is made: on X11 that takes the startup id out of
    /// the environment. Leaves the environment as it is, for Qt's own use.
    static StartTokens fromEnvironment();

    /// The one to activate a window with.
    const QString &preferred() const
    {
        return activationToken.isEmpty() ? startupId : activationToken;
    }
};
