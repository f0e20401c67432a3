#include "text/RegularFile.h"

#include <QFileInfo>

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace orvel {

ReadFailure openRegular(QFile &file, QIODevice::OpenMode mode)
{
    // Asked first: to open a device may do something to it.
    if (!QFileInfo(file.fileName()).isFile()) {
        return ReadFailure::NotARegularFile;
    }
#ifdef Q_OS_UNIX
    const int descriptor = ::open(QFile::encodeName(file.fileName()).constData(),
                                  O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (descriptor < 0) {
        return ReadFailure::CannotOpen;
    }
    struct stat info = {};
    const bool isRegular = fstat(descriptor, &info) == 0 && S_ISREG(info.st_mode);
    if (!isRegular || !file.open(descriptor, mode, QFileDevice::AutoCloseHandle)) {
        ::close(descriptor);
        return isRegular ? ReadFailure::CannotOpen : ReadFailure::NotARegularFile;
    }
    return ReadFailure::None;
#else
    return file.open(mode) ? ReadFailure::None : ReadFailure::CannotOpen;
#endif
}

} // namespace orvel
