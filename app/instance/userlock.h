#pragma once

#include <QtGlobal>

class QString;

/// A lock among the processes of one user. The kernel gives it back when the process ends, however
/// it does, so the file that is left behind keeps nobody out.
class UserLock
{
    Q_DISABLE_COPY_MOVE(UserLock)

public:
    enum class Result { Taken, HeldByAnother, NotPossible };

    UserLock() = default;
    ~UserLock();

    /// Takes the lock, without waiting, until this object is destroyed. Makes the file if need be.
    Result take(const QString &path);

private:
    int m_file = -1;
};
