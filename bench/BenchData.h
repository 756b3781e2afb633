#ifndef BENCHDATA_H
#define BENCHDATA_H

// Inputs of the benchmarks, generated in code so that every run measures the same bytes.

#include <QByteArray>
#include <QPair>
#include <QString>
#include <QTemporaryDir>
#include <QVector>

namespace OvBench {

// One value to read back: a section key and a key of that section.
using EntryRef = QPair<QString, QString>;

// A ClickInfo text made of `copies` copies of a typical acquisition (15 sections of 30 keys
// each, with a few comment lines and inline comments), in the form the library writes it:
// the generated text is loaded and saved through CPLClickInfo once. Copies after the first
// carry a numbered suffix on every section key, so that all section keys are unique.
QByteArray clickInfoText(int copies);

// The number of copies of the typical acquisition that make up about `bytes` bytes.
int copiesForSize(qint64 bytes);

// Every (section key, key) pair of the key/value entries of a ClickInfo text, in file order.
QVector<EntryRef> entriesOf(const QByteArray& text);

// A folder that lives as long as the program; benchmark inputs are written into it.
const QTemporaryDir& scratchDir();

// Writes `bytes` to `name` in scratchDir() and returns the file's path. Aborts with a
// message when the file cannot be written.
QString writeScratchFile(const QString& name, const QByteArray& bytes);

// Writes the content of a ClickInfo text as an INI file through QSettings (one group per
// section, its values as stored) and returns the path.
QString writeIniFile(const QString& name, const QByteArray& clickInfo);

// The inputs most benchmarks share, made on first use.
struct Inputs
{
    QByteArray typical; // about 10 KB
    QString typicalPath; // typical, as "ClickInfo.txt"
    QVector<EntryRef> typicalEntries;
    QString typicalIniPath; // typical as an INI file
    QString lastKey; // a key near the end of typical
};
const Inputs& inputs();

} // namespace OvBench

#endif // BENCHDATA_H
