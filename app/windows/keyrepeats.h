#pragma once

#include <QObject>

/// Tells the repetitions of a held key from new presses, for all windows of the program. X sends a
/// repetition as a release and a press that bear the same time stamp. Qt recognises it only if the
/// press has arrived when it looks at the release; on a busy machine it often arrives later, and
/// `QKeyEvent::isAutoRepeat()` says that the key was pressed anew. Such a press is passed on as the
/// repetition that it is.
class KeyRepeats : public QObject
{
public:
    /// Needs the application, and works for as long as it lives.
    KeyRepeats();

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    // The key and the time of the last release.
    quint32 m_scanCode = 0;
    quint64 m_timestamp = 0;
};
