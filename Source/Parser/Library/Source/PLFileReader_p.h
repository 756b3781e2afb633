#ifndef PLFILEREADER_P_H
#define PLFILEREADER_P_H

// Internal header, not installed: reading the bytes of a file whole, the one way every
// document, the one-value search and the XML reader read files.
//
// Rules, the same for every file the library reads:
// - only a regular file is read. A FIFO, a device or a socket is refused with
//   PL_NOT_REGULAR_FILE before it is opened for reading (so a FIFO never blocks and
//   /dev/zero never fills memory); a directory gives PL_FILE_OPEN_FAILED with the reason
//   "Is a directory". A symbolic link is followed.
// - a file larger than the limit (PL_MAX_FILE_SIZE unless a smaller one is asked for) gives
//   PL_FILE_TOO_LARGE, before anything is allocated for it; a file that grows past the limit
//   while it is read, too.
// - the file is read with read(2) into one buffer of its size, not mapped: a mapping of a
//   file that another process truncates meanwhile would end the program with SIGBUS.
// - an allocation failure gives PL_OUT_OF_MEMORY with the critical message.
// - a refusal of the system (open, read) gives PL_FILE_OPEN_FAILED and records its reason
//   for getLastSystemError().
// Each failure is logged in lcOvFile with the file's path. Sizes are 64-bit throughout.

#include "PLFileSystem_p.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>

class QIODevice;

namespace PLFile {

// Whether a path names a DICOM file whose metadata copies are appended to its image data: a
// path ending in ".dcm", in any case.
bool isDicomPath(const QString& path);

// Reads the whole file at `path` into *bytes (replaced). Returns 0 or a status as above.
// `read`, when given, receives what fstat(2) told of the file as it was opened, before it was
// read (so that a change made while it is read shows as a change after the read).
int readFile(const QString& path, QByteArray* bytes, qint64 limit, FileStatus* read = nullptr);
int readFile(const QString& path, QByteArray* bytes);

// Reads the metadata of a DICOM file: the bytes after the last NUL byte of the file (its
// image data always holds NUL bytes, its appended metadata never does), or the whole file
// when it holds none. The file is read backwards from its end in blocks, so the image data
// is read only as far as its last NUL, however large the file; the limit applies to the
// metadata. *offset receives the offset in the file at which the metadata begins. Same
// rules and statuses as readFile().
int readDicomMetadata(const QString& path, QByteArray* metadata, qint64* offset,
                      FileStatus* read = nullptr);

// Reads `device` (standard input, say) to its end into *bytes, refusing more than `limit`
// bytes with PL_FILE_TOO_LARGE. `name` names the device in messages.
int readDevice(QIODevice& device, const QString& name, QByteArray* bytes, qint64 limit);

} // namespace PLFile

#endif // PLFILEREADER_P_H
