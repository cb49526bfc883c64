#pragma once

class QString;
class QWindow;

/// Has the next window that asks for the keyboard use @p activationToken, and tells the desktop
/// that what it was given for has been answered. Does nothing if it is empty.
void useActivationToken(const QString &activationToken);

/// Shows @p window, also if it is hidden or minimised, in front of all others and with the
/// keyboard. @p activationToken is what the desktop gave to who asked for it, or empty.
void bringForward(QWindow &window, const QString &activationToken);
