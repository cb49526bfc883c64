#include "model/reserve.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

Reserve::Reserve(const std::string &storePath)
    : m_name(storePath + "-reserve")
{
}

bool Reserve::takeUp()
{
    if (m_isThere)
        return true;
    constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;
    constexpr int blockSize = 512;
    struct stat status {
    };
    m_isThere = ::lstat(m_name.c_str(), &status) == 0 && status.st_mode == (S_IFREG | ownerOnly) &&
                status.st_blocks >= size / blockSize;
    if (m_isThere)
        return true;
    // What comes back from a backup may have a size and no blocks.
    ::unlink(m_name.c_str());
    const int descriptor =
        ::open(m_name.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, ownerOnly);
    if (descriptor < 0)
        return false;
    m_isThere = ::fchmod(descriptor, ownerOnly) == 0 && ::posix_fallocate(descriptor, 0, size) == 0;
    ::close(descriptor);
    if (!m_isThere)
        ::unlink(m_name.c_str());
    return m_isThere;
}

bool Reserve::giveUp()
{
    m_isThere = false;
    return ::unlink(m_name.c_str()) == 0;
}
