#include "levelset/ReplaceFile.h"

#include <QByteArray>
#include <QFile>

#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <optional>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace {

// An open file that is closed exactly once; close() reports what a destructor cannot.
class Descriptor {
public:
    explicit Descriptor(int fd) : fd_(fd) {}
    ~Descriptor() {
        if (fd_ >= 0)
            ::close(fd_);
    }
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;

    int get() const { return fd_; }
    bool valid() const { return fd_ >= 0; }
    // 0, or the error of the close, which is where some file systems report a failed write.
    int close() { return ::close(std::exchange(fd_, -1)) == 0 ? 0 : errno; }

private:
    int fd_;
};

QString reason(int error) {
    return qt_error_string(error);
}

QByteArray folderOf(const QByteArray &path) {
    const qsizetype slash = path.lastIndexOf('/');
    return slash < 0 ? QByteArray(".") : slash == 0 ? QByteArray("/") : path.left(slash);
}

// Writes all of data at offset, through interrupted and short writes. 0, or the error.
int writeAt(int fd, QByteArrayView data, off_t offset) {
    qsizetype done = 0;
    while (done < data.size()) {
        const ssize_t n = ::pwrite(fd, data.data() + done, static_cast<size_t>(data.size() - done),
                                   offset + done);
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return n < 0 ? errno : EIO;
        done += n;
    }
    return 0;
}

// The file at the end of path's chain of symbolic links, or an empty array when the chain
// loops (or runs longer than the system itself would follow).
QByteArray followLinks(QByteArray path) {
    constexpr int MostLinks = 40;
    for (int hop = 0; hop <= MostLinks; ++hop) {
        char target[PATH_MAX];
        const ssize_t n = ::readlink(path.constData(), target, sizeof target);
        if (n < 0)
            return path; // not a link (or not there): this is the file to write
        const QByteArray link(target, n);
        path = link.startsWith('/') ? link : folderOf(path) + '/' + link;
    }
    return {};
}

// The new file gets the old one's permissions and owner, or those of any newly created file.
int takeModeOf(int fd, const struct stat *old) {
    if (!old) {
        const mode_t mask = ::umask(0);
        ::umask(mask);
        return ::fchmod(fd, 0666 & ~mask) == 0 ? 0 : errno;
    }
    // Only root can give a file away; anyone else keeps the bytes, which matter more.
    if (::fchown(fd, old->st_uid, old->st_gid) != 0 && errno != EPERM)
        return errno;
    return ::fchmod(fd, old->st_mode & 07777) == 0 ? 0 : errno;
}

// Makes the rename itself durable. A failure here cannot undo the rename, so it is not reported.
void syncFolder(const QByteArray &folder) {
    Descriptor dir(::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (dir.valid())
        ::fsync(dir.get());
}

// The whole of an open file, or nullopt with error set.
std::optional<QByteArray> readAll(int fd, int &error) {
    constexpr qsizetype Largest = 64 * 1024 * 1024;
    QByteArray bytes;
    char chunk[65536];
    for (;;) {
        const ssize_t n = ::pread(fd, chunk, sizeof chunk, static_cast<off_t>(bytes.size()));
        if (n < 0 && errno == EINTR)
            continue;
        if (n < 0 || bytes.size() + n > Largest) {
            error = n < 0 ? errno : EFBIG;
            return std::nullopt;
        }
        if (n == 0)
            return bytes;
        bytes.append(chunk, n);
    }
}

// For a writable file in a folder that takes no new file: the direct write the file's own
// permissions allow. The old bytes still fit where they were, so they go back on failure.
ReplaceResult rewriteInPlace(const QByteArray &target, QByteArrayView bytes) {
    Descriptor file(::open(target.constData(), O_RDWR | O_CLOEXEC));
    int error = 0;
    if (!file.valid())
        return {reason(errno), true};
    const std::optional<QByteArray> old = readAll(file.get(), error);
    if (!old)
        return {reason(error), true};

    error = writeAt(file.get(), bytes, 0);
    if (!error && ::ftruncate(file.get(), static_cast<off_t>(bytes.size())) != 0)
        error = errno;
    if (!error && ::fsync(file.get()) != 0)
        error = errno;
    if (error) {
        if (writeAt(file.get(), *old, 0) == 0 &&
            ::ftruncate(file.get(), static_cast<off_t>(old->size())) == 0)
            ::fsync(file.get());
        return {reason(error), true};
    }
    error = file.close();
    return {error ? reason(error) : QString(), true};
}

} // namespace

ReplaceResult replaceFile(const QString &path, QByteArrayView bytes) {
    const QByteArray target = followLinks(QFile::encodeName(path));
    if (target.isEmpty())
        return {reason(ELOOP)};
    struct stat old {};
    const bool exists = ::stat(target.constData(), &old) == 0;

    QByteArray temporary = folderOf(target) + "/.kstsave-XXXXXX";
    Descriptor file(::mkostemp(temporary.data(), O_CLOEXEC));
    if (!file.valid()) {
        const int error = errno;
        if ((error == EACCES || error == EPERM) && exists && S_ISREG(old.st_mode))
            return rewriteInPlace(target, bytes);
        return {reason(error)};
    }

    int error = writeAt(file.get(), bytes, 0);
    if (!error)
        error = takeModeOf(file.get(), exists ? &old : nullptr);
    if (!error && ::fsync(file.get()) != 0)
        error = errno;
    if (!error)
        error = file.close();
    if (!error && ::rename(temporary.constData(), target.constData()) != 0)
        error = errno;
    if (error) {
        ::unlink(temporary.constData());
        return {reason(error)};
    }
    syncFolder(folderOf(target));
    return {};
}
