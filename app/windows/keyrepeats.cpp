#include "app/windows/keyrepeats.h"

#include <QGuiApplication>
#include <QKeyEvent>

KeyRepeats::KeyRepeats()
{
    qGuiApp->installEventFilter(this);
}

bool KeyRepeats::eventFilter(QObject *watched, QEvent *event)
{
    // A window passes its keys on to items, as events that come by here again.
    if (!watched->isWindowType())
        return false;
    if (event->type() == QEvent::KeyRelease) {
        const auto *const release = static_cast<QKeyEvent *>(event);
        m_scanCode = release->nativeScanCode();
        m_timestamp = release->timestamp();
        return false;
    }
    if (event->type() != QEvent::KeyPress)
        return false;
    const auto *const press = static_cast<QKeyEvent *>(event);
    // Keys that some program made up have no code, and may well be released and pressed at once.
    const bool isRepetition = press->nativeScanCode() != 0 &&
                              press->nativeScanCode() == m_scanCode &&
                              press->timestamp() == m_timestamp;
    if (!isRepetition || press->isAutoRepeat())
        return false;
    QKeyEvent repetition(QEvent::KeyPress, press->key(), press->modifiers(),
                         press->nativeScanCode(), press->nativeVirtualKey(),
                         press->nativeModifiers(), press->text(), true,
                         static_cast<quint16>(press->count()), press->device());
    repetition.setTimestamp(press->timestamp());
    QCoreApplication::sendEvent(watched, &repetition);
    event->setAccepted(repetition.isAccepted());
    return true;
}
