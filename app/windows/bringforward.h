#pragma once

class QString;
class QWindow;

/// Shows @p window, also if it is hidden or minimised, in front of all others and with the
/// keyboard. @p activationToken is what the desktop gave to who asked for it, or empty.
void bringForward(QWindow &window, const QString &activationToken);
