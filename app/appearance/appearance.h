#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QDBusVariant>
#include <QObject>
#include <QPalette>

/// Makes the application dark where the desktop wants that and the platform's palette does not know
/// it, and light again where the palette does not come along with that. The wish comes from the
/// desktop's settings portal, also while the program runs; a palette that fits it stays as it is,
/// and so does one that is dark where the desktop has never wanted that. Waits for nothing, and has
/// no service started.
class Appearance : public QObject
{
    Q_OBJECT

public:
    /// @p connection is the session bus, or one that is not connected.
    explicit Appearance(const QDBusConnection &connection);

    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void onSettingChanged(const QString &group, const QString &key, const QDBusVariant &value);

private:
    void ask();
    void setColorScheme(const QVariant &value);
    void update();

    QDBusConnection m_connection;
    QDBusServiceWatcher m_portalWatcher;
    bool m_wantsDark = false;
    /// Whether it does now or has done so earlier.
    bool m_hasWantedDark = false;
    bool m_hasOwnPalette = false;
};

/// What the application looks like where the desktop wants it dark and the platform's palette is
/// light.
QPalette darkPalette();

/// What the application looks like where the desktop wants it dark no more and the platform's
/// palette remains dark.
QPalette lightPalette();
