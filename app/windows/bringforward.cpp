#include "app/windows/bringforward.h"

#include "app/windows/platform.h"
#include "app/windows/x11requests.h"

#include <QTimer>
#include <QWindow>

void useActivationToken(const QString &activationToken)
{
    if (activationToken.isEmpty())
        return;
    // On Wayland, Qt takes the token from the environment with the request that follows.
    qputenv("XDG_ACTIVATION_TOKEN", activationToken.toUtf8());
    endStartOnX11(activationToken);
}

void bringForward(QWindow &window, const QString &activationToken)
{
    useActivationToken(activationToken);
    window.setWindowStates(window.windowStates() & ~Qt::WindowMinimized);
    // show() would make a maximised window a normal one.
    window.setVisible(true);
    window.raise();
    window.requestActivate();
    activateOnX11(window, activationToken);

    if (isWayland()) {
        // Some compositors raise no window but new ones.
        const QWindow *const before = QGuiApplication::focusWindow();
        QTimer::singleShot(300, &window, [&window, before] {
            // The user may have gone on to another window of the program.
            const QWindow *const now = QGuiApplication::focusWindow();
            if (window.isActive() || !window.isVisible() || (now && now != before))
                return;
            window.setVisible(false);
            window.setVisible(true);
            window.requestActivate();
        });
    }
}
