#pragma once

class QString;
class QWindow;

/// On X11, shows the desktop that @p window lies on and gives it the keyboard there; elsewhere does
/// nothing. The request bears the time in @p activationToken, or that of now. Qt asks for it in the
/// program's own name, and then some window managers only mark a window of another desktop as
/// wanting attention.
void activateOnX11(const QWindow &window, const QString &activationToken);

/// On X11, tells the desktop that what it gave @p activationToken for has been answered, so that it
/// shows no busy pointer any longer. Does nothing on other platforms, or without a token.
void endStartOnX11(const QString &activationToken);

/// Keeps @p window, which is not shown yet, out of task bars and pagers. Does nothing on other
/// platforms.
void keepOutOfTaskBarsOnX11(QWindow &window);

/// Whether the X server gives what is typed to @p window at this moment. False on other platforms.
bool hasKeyboardOnX11(const QWindow &window);
