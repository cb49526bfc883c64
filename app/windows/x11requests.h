#pragma once

class QWindow;

/// On X11, shows the desktop that @p window lies on and gives it the keyboard there; elsewhere does
/// nothing. Qt asks for it in the program's own name, and then some window managers only mark a
/// window of another desktop as wanting attention.
void activateOnX11(const QWindow &window);

/// Keeps @p window, which is not shown yet, out of task bars and pagers. Does nothing on other
/// platforms.
void keepOutOfTaskBarsOnX11(QWindow &window);
