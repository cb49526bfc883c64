#include "app/instance/userlock.h"

#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

UserLock::~UserLock()
{
    if (m_file >= 0)
        ::close(m_file);
}

UserLock::Result UserLock::take(const QString &path)
{
    if (m_file >= 0)
        return Result::Taken;
    // Without O_CLOEXEC a child that outlives the process would keep the lock.
    const int file =
        ::open(QFile::encodeName(path).constData(),
               O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK, S_IRUSR | S_IWUSR);
    if (file < 0)
        return Result::NotPossible;
    if (::flock(file, LOCK_EX | LOCK_NB) != 0) {
        const bool isHeld = errno == EWOULDBLOCK;
        ::close(file);
        return isHeld ? Result::HeldByAnother : Result::NotPossible;
    }
    // The sticky bit keeps it from being tidied away. Where there is no such thing, so be it.
    [[maybe_unused]] const int marked = ::fchmod(file, S_ISVTX | S_IRUSR | S_IWUSR);
    m_file = file;
    return Result::Taken;
}
