#include "PLFileSystem_p.h"

#include "PLStatus_p.h"

#include <QFile>

#include <cstring>
#include <unistd.h>

namespace PLFile {

int Descriptor::close()
{
    return isValid() ? ::close(release()) : 0;
}

QByteArray nativePath(const QString& path)
{
    return QFile::encodeName(path);
}

QString systemFailure(const QString& path, const char* action, int error)
{
    PLStatusPrivate::setLastSystemError(error);
    return QStringLiteral("%1: %2: %3")
        .arg(path, QLatin1String(action), QString::fromLocal8Bit(std::strerror(error)));
}

} // namespace PLFile
