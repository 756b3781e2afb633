// The saves built on CPLFileWriter: one file's whole content, a DICOM copy appended, and
// several files all or nothing.

#include "PLFileWriter_p.h"

#include "PLDicomMetadata_p.h"
#include "PLLogging_p.h"
#include "PLStatus.h"
#include "PLStatus_p.h"

#include <algorithm>

namespace {

// Opens `writer`, checks `precondition` under the lock, and writes what `content` makes of
// the file's current bytes (read under the lock). 0, or the first failure's status.
template<typename Content>
int openAndWrite(CPLFileWriter& writer, const PLFile::Precondition& precondition, Content content)
{
    int status = writer.open(PL_LOCK_WAIT_MS);
    if (status == PL_SUCCESS && precondition)
        status = precondition(writer);
    if (status == PL_SUCCESS)
        status = writer.write(content(writer));
    return status;
}

template<typename Content>
int writeWhole(const QString& path, CPLFileWriter::Mode mode,
               const PLFile::Precondition& precondition, Content content)
{
    return PL_GUARDED({
        CPLFileWriter writer(path, mode);
        const int status = openAndWrite(writer, precondition, content);
        return status == PL_SUCCESS ? writer.commit() : status;
    });
}

} // namespace

namespace PLFile {

int saveFile(const QString& path, const QByteArray& bytes, const Precondition& precondition)
{
    return writeWhole(path, CPLFileWriter::Mode::Replace, precondition,
                      [&](CPLFileWriter&) -> const QByteArray& { return bytes; });
}

int saveFileIfUnchanged(const QString& path, const QByteArray& bytes, const QByteArray& expected)
{
    return saveFile(path, bytes, [&](CPLFileWriter& writer) {
        QByteArray current;
        const int status = writer.readCurrent(&current);
        return status != PL_SUCCESS ? status : current == expected ? PL_SUCCESS : PL_FILE_CHANGED;
    });
}

int appendDicomCopy(const QString& path, const QByteArray& copy, const Precondition& precondition)
{
    // The return type is written out: with the string builder, "+" would return a builder
    // that refers to the lambda's locals.
    return writeWhole(path, CPLFileWriter::Mode::Append, precondition,
                      [&](CPLFileWriter& writer) -> QByteArray {
                          QByteArray metadata;
                          writer.readCurrent(&metadata); // unreadable: no separator
                          return PLDicom::copySeparator(metadata) + copy;
                      });
}

int saveFiles(const QVector<FileSave>& saves)
{
    return PL_GUARDED({
        std::vector<std::unique_ptr<CPLFileWriter>> writers;
        for (const FileSave& save : saves)
            writers.push_back(
                std::make_unique<CPLFileWriter>(save.path, CPLFileWriter::Mode::Replace));
        // Locked in the order of the files they write, so that two such saves never wait
        // for each other.
        std::vector<int> order(size_t(saves.size()));
        for (int i = 0; i < saves.size(); ++i)
            order[size_t(i)] = i;
        std::sort(order.begin(), order.end(), [&](int a, int b) {
            return writers[size_t(a)]->targetPath() < writers[size_t(b)]->targetPath();
        });
        std::vector<CPLFileWriter*> opened;
        for (const int i : order) {
            const FileSave& save = saves.at(i);
            const int status
                = openAndWrite(*writers[size_t(i)], save.precondition,
                               [&](CPLFileWriter&) -> const QByteArray& { return save.bytes; });
            if (status != PL_SUCCESS)
                return status;
            opened.push_back(writers[size_t(i)].get());
        }
        return CPLFileWriter::commitTogether(opened);
    });
}

} // namespace PLFile
