#include "PLStatus.h"

#include "PLStatus_p.h"

#include <cstring>

namespace {

thread_local int lastSystemError = 0;

} // namespace

QString getStatusText(int status)
{
    switch (status) {
    case PL_SUCCESS:
        return QStringLiteral("success");
    case PL_MALFORMED_SECTION_HEADER:
        return QStringLiteral("malformed section header (a header is \"*** \", a key, a colon, "
                              "and no \"#\" before the colon)");
    case PL_FILE_OPEN_FAILED:
        return QStringLiteral("the file cannot be opened");
    case PL_NULL_ARGUMENT:
        return QStringLiteral("a required argument is missing");
    case PL_EMPTY_KEY:
        return QStringLiteral("a key or name is empty");
    case PL_KEY_NOT_FOUND:
        return QStringLiteral("no such key or section");
    case PL_INVALID_ARGUMENT:
        return QStringLiteral("invalid argument, or the file cannot be written completely");
    case PL_NOTHING_TO_WORK_ON:
        return QStringLiteral("a section header without a key, or a \"ClickNumber\" section "
                              "without a click number");
    case PL_OUT_OF_RANGE:
        return QStringLiteral("index or value out of range");
    case PL_SECTION_NOT_PRESENT:
        return QStringLiteral("no such section");
    case PL_MALFORMED_XML:
        return QStringLiteral("malformed XML");
    case PL_FOLDER_MISSING:
        return QStringLiteral("the folder does not exist");
    case PL_FILE_TOO_LARGE:
        return QStringLiteral("the file is too large (the limit is %1 MiB)")
            .arg(PL_MAX_FILE_SIZE / (1024 * 1024));
    case PL_NOT_REGULAR_FILE:
        return QStringLiteral("not a regular file (a FIFO, device or socket is never read or "
                              "replaced)");
    case PL_OUT_OF_MEMORY:
        return QStringLiteral("not enough memory");
    case PL_FILE_LOCKED:
        return QStringLiteral("the file is locked by another editor");
    case PL_KEY_REPEATED:
        return QStringLiteral("the key stands on more than one line of its section");
    case PL_FILE_CHANGED:
        return QStringLiteral("the file was changed by someone else since it was read");
    case PL_LOAD_INCOMPLETE:
        return QStringLiteral("the document did not load all the file holds, and a save over it "
                              "would lose the rest");
    case PL_LIMIT_EXCEEDED:
        return QStringLiteral("the file holds more than the library loads");
    case PL_NO_BACKGROUND_FITS:
        return QStringLiteral("no background of the library fits the acquisition");
    case PL_CLICK_ALREADY_LISTED:
        return QStringLiteral("the sequence lists the click number already");
    case PL_FOLDER_NOT_CLICK_NUMBER:
        return QStringLiteral("the acquisition folder is not named after its click number");
    default:
        return QStringLiteral("status %1").arg(status);
    }
}

QString getLastSystemError()
{
    return lastSystemError == 0 ? QString()
                                : QString::fromLocal8Bit(std::strerror(lastSystemError));
}

namespace PLStatusPrivate {

void clearLastSystemError()
{
    lastSystemError = 0;
}

void setLastSystemError(int error)
{
    lastSystemError = error;
}

} // namespace PLStatusPrivate
