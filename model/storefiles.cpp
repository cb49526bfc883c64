#include "model/storefiles.h"

#include "model/storeerror.h"

#include <QString>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace fs = std::filesystem;

namespace
{

bool isDirectory(const fs::path &path)
{
    std::error_code error;
    return fs::is_directory(path, error);
}

std::string modeOf(const struct stat &status)
{
    return QString::asprintf("mode %04o", static_cast<unsigned>(status.st_mode & 07777))
        .toStdString();
}

/// What to do about @p error in using @p path, where chmod gives the @p rights that it takes.
std::string remedy(int error, const fs::path &path, const std::string &rights)
{
    if (error == EPERM)
        return " (it is marked as immutable). This takes the mark away: chattr -i " + quoted(path);
    struct stat status {
    };
    ::stat(path.c_str(), &status);
    return " (" + modeOf(status) + "). If it is yours, this gives them to you: chmod u+" + rights +
           ' ' + quoted(path);
}

/// Why the user may not do @p access, as access(2) takes it, to @p path: an errno, or 0.
int denial(const fs::path &path, int access)
{
    return ::faccessat(AT_FDCWD, path.c_str(), access, AT_EACCESS) == 0 ? 0 : errno;
}

/// Refuses the store at @p path for what lies at @p part, in one of its places.
void checkFile(const fs::path &path, const fs::path &part)
{
    const std::string name = quoted(part);
    struct stat status {
    };
    if (::lstat(part.c_str(), &status) != 0)
        return;
    if (!S_ISREG(status.st_mode) && part == path)
        refuseContents(path, "is not a plain file");
    if (!S_ISREG(status.st_mode))
        refuse(path, "cannot be used: " + name + " is not a plain file. Move that one away.");
    if (status.st_uid != ::geteuid())
        refuse(path, "cannot be used: the file " + name +
                         " belongs to another user. If you trust what is in it, this makes it "
                         "yours: sudo chown " +
                         std::to_string(::geteuid()) + ' ' + name + '.');
    if (status.st_nlink > 1)
        refuse(path, "cannot be used: the file " + name +
                         " is hard-linked, and would be changed under its other name, too. This "
                         "gives it a file of its own: cp " +
                         name + ' ' + quoted(beside(part, ".copy")) + " && mv -f " +
                         quoted(beside(part, ".copy")) + ' ' + name + '.');
    if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
        refuse(path, "cannot be used: the file " + name + " may have been changed by others, as " +
                         "others may write it (" + modeOf(status) +
                         "). If you trust what is in it, this takes that right away: chmod go-w " +
                         name + '.');
}

} // namespace

fs::path beside(fs::path path, const char *suffix)
{
    path += suffix;
    return path;
}

double writtenAt(const fs::path &path)
{
    struct stat status {
    };
    if (::stat(path.c_str(), &status) != 0)
        return 0;
    return static_cast<double>(status.st_mtim.tv_sec) +
           static_cast<double>(status.st_mtim.tv_nsec) / 1e9;
}

qint64 sizeOf(const fs::path &path)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    return error ? 0 : static_cast<qint64>(size);
}

std::optional<pid_t> holderOf(const fs::path &path)
{
    // SQLite's locks lie here in every store.
    constexpr off_t firstLock = 0x40000000;
    constexpr off_t locks = 512;
    // Without waiting, should a pipe lie there.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0)
        return std::nullopt;
    struct flock lock {
    };
    lock.l_type = F_RDLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = firstLock;
    lock.l_len = locks;
    const bool isHeld = ::fcntl(descriptor, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
    // This lets go of the process's own locks on the file, so it is not to have any.
    ::close(descriptor);
    return isHeld ? std::optional(lock.l_pid) : std::nullopt;
}

void removeFile(const fs::path &path)
{
    ::unlink(path.c_str());
}

std::string quoted(const fs::path &path)
{
    return '"' + path.native() + '"';
}

void refuse(const fs::path &path, const std::string &what)
{
    throw StoreError("The store " + quoted(path) + " " + what);
}

void refuseContents(const fs::path &path, const std::string &what, const std::string &detail)
{
    // A log that stays would be taken for that of the next file of that name.
    throw UnusableStoreError("The store " + quoted(path) + " " + what +
                             ". It has been left as it is. To start with an empty store, move it "
                             "away, together with the files beside it whose names begin with its "
                             "own; or put a backup in the place of all these" +
                             detail);
}

void refuseAsDamaged(const fs::path &path, const std::string &detail)
{
    refuseContents(path, "is damaged", detail);
}

std::string explained(int error, const fs::path &directory)
{
    struct statvfs disk {
    };
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        ::statvfs(directory.c_str(), &disk);
        if (disk.f_files > 0 && disk.f_favail == 0)
            return "the disk of the directory " + quoted(directory) +
                   " takes no more files, however small (it has no free inode). Delete some there";
        return "the disk of the directory " + quoted(directory) + " is full. Free some space on it";
    case EROFS:
        return "the disk of the directory " + quoted(directory) +
               " is mounted read-only. Mount it for writing";
    case EACCES:
    case EPERM:
        return "you lack the rights to make files in the directory " + quoted(directory) +
               remedy(error, directory, "rwx");
    default:
        return std::string(std::strerror(error)) + ". Check what lies in " + quoted(directory);
    }
}

int obstacle(const fs::path &directory)
{
    // The index of the log, and the first changes in it.
    constexpr unsigned long roomToOpen = 64UL * 1024;
    if (const int error = denial(directory, W_OK | X_OK))
        return error;
    struct statvfs disk {
    };
    if (::statvfs(directory.c_str(), &disk) != 0)
        return 0;
    const bool hasNoInode = disk.f_files > 0 && disk.f_favail == 0;
    return hasNoInode || disk.f_bavail * disk.f_frsize < roomToOpen ? ENOSPC : 0;
}

void checkRights(const fs::path &path)
{
    const fs::path directory = path.parent_path();
    if (const int error = denial(directory, W_OK | X_OK))
        refuse(path, "cannot be used: " + explained(error, directory) + ".");
    for (const char *const suffix : {"", logSuffix, journalSuffix}) {
        const fs::path part = beside(path, suffix);
        const int error = denial(part, R_OK | W_OK);
        if (error != 0 && error != ENOENT)
            refuse(path, "cannot be used: you lack the rights to read and write the file " +
                             quoted(part) + remedy(error, part, "rw") + ".");
    }
}

void checkFiles(const fs::path &path)
{
    for (const char *const suffix : {"", logSuffix, journalSuffix, sharedIndexSuffix})
        checkFile(path, beside(path, suffix));
}

void syncDirectory(const fs::path &directory)
{
    const int descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

void makeDirectory(const fs::path &directory)
{
    if (isDirectory(directory))
        return;
    const fs::path above = directory.parent_path();
    if (above != directory)
        makeDirectory(above);
    if (::mkdir(directory.c_str(), S_IRWXU) == 0) {
        ::chmod(directory.c_str(), S_IRWXU); // The umask may have taken even the owner's rights.
        syncDirectory(above);
        return;
    }
    const int error = errno;
    if (!isDirectory(directory))
        throw StoreError("The directory " + quoted(directory) +
                         " cannot be made: " + explained(error, above) + ".");
}
