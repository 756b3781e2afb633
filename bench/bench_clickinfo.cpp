// Loading, saving and reading ClickInfo documents, and the same reads through QSettings.

#include "BenchData.h"

#include "PLClickInfo.h"
#include "PLStatus.h"

#include <QDateTime>
#include <QFile>
#include <QSettings>
#include <QStringList>

#include <benchmark/benchmark.h>

#include <memory>

using namespace OvBench;

namespace {

void setBytes(benchmark::State& state, qint64 bytesPerIteration)
{
    state.SetBytesProcessed(state.iterations() * bytesPerIteration);
}

void loadFile(benchmark::State& state, const QString& path, qint64 size)
{
    for (auto _ : state) {
        CPLClickInfo document;
        if (document.loadClickInfo(path) != PL_SUCCESS) {
            state.SkipWithError("loadClickInfo failed");
            break;
        }
        benchmark::DoNotOptimize(document);
    }
    setBytes(state, size);
}

void BM_LoadClickInfo_10KB(benchmark::State& state)
{
    loadFile(state, inputs().typicalPath, inputs().typical.size());
    state.counters["file_bytes"] = double(inputs().typical.size());
}
BENCHMARK(BM_LoadClickInfo_10KB)->Unit(benchmark::kMicrosecond);

// The scaling pair: the same structure repeated with unique section keys.
struct LargeFile
{
    QString path;
    qint64 size = 0;
};

const LargeFile& largeFile(qint64 bytes)
{
    static QHash<qint64, LargeFile> files;
    auto it = files.find(bytes);
    if (it == files.end()) {
        const QByteArray text = clickInfoText(copiesForSize(bytes));
        LargeFile file { writeScratchFile(QStringLiteral("ClickInfo-%1.txt").arg(bytes), text),
                         text.size() };
        it = files.insert(bytes, file);
    }
    return *it;
}

// Loading alone, and destroying alone, of the large files: the time of loading should grow
// with the size of the file. Destroying a document frees its memory, which costs more per
// byte when it no longer fits in the caches; it is measured on its own.
enum class Phase { Load, Destroy };

void loadLargeFile(benchmark::State& state, qint64 bytes, Phase phase)
{
    const LargeFile& file = largeFile(bytes);
    for (auto _ : state) {
        if (phase == Phase::Destroy)
            state.PauseTiming();
        auto document = std::make_unique<CPLClickInfo>();
        if (document->loadClickInfo(file.path) != PL_SUCCESS) {
            state.SkipWithError("loadClickInfo failed");
            break;
        }
        benchmark::DoNotOptimize(document.get());
        if (phase == Phase::Destroy)
            state.ResumeTiming();
        else
            state.PauseTiming();
        document.reset();
        if (phase == Phase::Load)
            state.ResumeTiming();
    }
    setBytes(state, file.size);
}

void BM_LoadClickInfo_1MB(benchmark::State& state)
{
    loadLargeFile(state, qint64(1) << 20, Phase::Load);
}
BENCHMARK(BM_LoadClickInfo_1MB)->Unit(benchmark::kMillisecond);

void BM_LoadClickInfo_32MB(benchmark::State& state)
{
    loadLargeFile(state, qint64(32) << 20, Phase::Load);
}
BENCHMARK(BM_LoadClickInfo_32MB)->Unit(benchmark::kMillisecond)->MinTime(3.0);

void BM_DestroyClickInfo_1MB(benchmark::State& state)
{
    loadLargeFile(state, qint64(1) << 20, Phase::Destroy);
}
BENCHMARK(BM_DestroyClickInfo_1MB)->Unit(benchmark::kMillisecond);

void BM_DestroyClickInfo_32MB(benchmark::State& state)
{
    loadLargeFile(state, qint64(32) << 20, Phase::Destroy);
}
BENCHMARK(BM_DestroyClickInfo_32MB)->Unit(benchmark::kMillisecond)->MinTime(3.0);

void BM_SaveClickInfo_10KB(benchmark::State& state)
{
    CPLClickInfo document;
    if (document.loadClickInfo(inputs().typicalPath) != PL_SUCCESS) {
        state.SkipWithError("loadClickInfo failed");
        return;
    }
    const QString target = scratchDir().filePath(QStringLiteral("Saved.txt"));
    for (auto _ : state) {
        if (document.saveClickInfo(target) != PL_SUCCESS) {
            state.SkipWithError("saveClickInfo failed");
            break;
        }
    }
    setBytes(state, inputs().typical.size());
}
BENCHMARK(BM_SaveClickInfo_10KB)->Unit(benchmark::kMicrosecond);

// The text of a save without the file: what the save costs apart from the disk.
void BM_ClickInfoData_10KB(benchmark::State& state)
{
    CPLClickInfo document;
    if (document.loadClickInfo(inputs().typicalPath) != PL_SUCCESS) {
        state.SkipWithError("loadClickInfo failed");
        return;
    }
    for (auto _ : state)
        benchmark::DoNotOptimize(document.getClickInfoData());
    setBytes(state, inputs().typical.size());
}
BENCHMARK(BM_ClickInfoData_10KB)->Unit(benchmark::kMicrosecond);

void BM_ObtainValue_10KB(benchmark::State& state)
{
    const QByteArray& text = inputs().typical;
    const QString& key = inputs().lastKey;
    QString value;
    for (auto _ : state) {
        if (CPLClickInfo::obtainValueFromClickInfoFile(text.constData(), key, &value)
            != PL_SUCCESS) {
            state.SkipWithError("obtainValueFromClickInfoFile did not find the key");
            break;
        }
        benchmark::DoNotOptimize(value);
    }
    setBytes(state, text.size());
}
BENCHMARK(BM_ObtainValue_10KB)->Unit(benchmark::kMicrosecond);

// Load the file and read every value, as an application reading an acquisition does.
void BM_LoadAndReadAll_10KB(benchmark::State& state)
{
    const QVector<EntryRef>& entries = inputs().typicalEntries;
    QString value;
    for (auto _ : state) {
        CPLClickInfo document;
        int found = 0;
        if (document.loadClickInfo(inputs().typicalPath) == PL_SUCCESS) {
            for (const EntryRef& entry : entries)
                found += document.getValue(entry.first, entry.second, &value) == PL_SUCCESS;
        }
        if (found != entries.size()) {
            state.SkipWithError("not every value could be read");
            break;
        }
        benchmark::DoNotOptimize(value);
    }
    state.counters["values"] = double(entries.size());
}
BENCHMARK(BM_LoadAndReadAll_10KB)->Unit(benchmark::kMicrosecond);

// QSettings keeps parsed files in a process-wide cache and reads a file again only when its
// size or modification time changed. Each iteration therefore gives the file a new
// modification time (outside the timed part), so every new QSettings really parses it.
class IniToucher
{
public:
    explicit IniToucher(const QString& path)
        : m_path(path)
        , m_base(QDateTime::currentDateTimeUtc().addDays(-1))
    {
    }
    bool touch()
    {
        QFile file(m_path);
        return file.open(QIODevice::ReadWrite)
            && file.setFileTime(m_base.addSecs(++m_count), QFileDevice::FileModificationTime);
    }

private:
    QString m_path;
    QDateTime m_base;
    qint64 m_count = 0;
};

// Checks that touching the file makes a new QSettings read it again: the file is rewritten
// with a different value of the same size, and only the touch reveals the change.
bool touchedIniIsReread()
{
    const QString path = scratchDir().filePath(QStringLiteral("Reread.ini"));
    const auto write = [&](const char* content) {
        QFile file(path);
        return file.open(QIODevice::WriteOnly | QIODevice::Truncate) && file.write(content) > 0;
    };
    IniToucher toucher(path);
    if (!write("[g]\nk=1\n") || !toucher.touch())
        return false;
    if (QSettings(path, QSettings::IniFormat).value(QStringLiteral("g/k")).toInt() != 1)
        return false;
    if (!write("[g]\nk=2\n") || !toucher.touch())
        return false;
    return QSettings(path, QSettings::IniFormat).value(QStringLiteral("g/k")).toInt() == 2;
}

void BM_QSettingsReadAll_10KB(benchmark::State& state)
{
    if (!touchedIniIsReread()) {
        state.SkipWithError("cannot make QSettings read the file again; result would be void");
        return;
    }
    const QString& path = inputs().typicalIniPath;
    QStringList keys;
    for (const EntryRef& entry : inputs().typicalEntries)
        keys.append(entry.first + QLatin1Char('/') + entry.second);
    IniToucher toucher(path);
    QString value;
    for (auto _ : state) {
        state.PauseTiming();
        const bool touched = toucher.touch();
        state.ResumeTiming();
        QSettings ini(path, QSettings::IniFormat);
        int found = 0;
        for (const QString& key : qAsConst(keys)) {
            const QVariant v = ini.value(key);
            found += v.isValid();
            value = v.toString();
        }
        if (!touched || found != keys.size()) {
            state.SkipWithError("the INI file could not be touched or read completely");
            break;
        }
        benchmark::DoNotOptimize(value);
    }
    state.counters["values"] = double(keys.size());
}
BENCHMARK(BM_QSettingsReadAll_10KB)->Unit(benchmark::kMicrosecond);

} // namespace
