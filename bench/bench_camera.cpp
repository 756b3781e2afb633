// The instrument configuration as the application loads it at start-up: the sample
// instrument's "CameraInfo.txt" with its two extensions, then the checks and accessory states.

#include "PLCameraInfo.h"
#include "PLPaths.h"
#include "PLStatus.h"

#include <QByteArray>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace {

// A copy of samples/instrument in a scratch folder, with the settings store beside it.
QString instrumentCopy()
{
    static QTemporaryDir scratch;
    static const QString file = [] {
        const QString from = QStringLiteral(OVPARSER_SAMPLES "/instrument");
        QDirIterator files(from, QDir::Files, QDirIterator::Subdirectories);
        while (files.hasNext()) {
            const QString source = files.next();
            const QString target
                = scratch.filePath(QStringLiteral("instrument") + source.mid(from.size()));
            QDir().mkpath(QFileInfo(target).path());
            QFile::copy(source, target);
        }
        qputenv(OV_DATA_DIR_VARIABLE, scratch.filePath(QStringLiteral("data")).toLocal8Bit());
        return scratch.filePath(QStringLiteral("instrument/CameraInfo.txt"));
    }();
    return file;
}

void BM_CameraLoadWithExtensions(benchmark::State& state)
{
    const QString file = instrumentCopy();
    for (auto _ : state) {
        CPLCameraInfo camera;
        if (camera.load(file) != PL_SUCCESS || camera.getLoadedExtensions().size() != 2) {
            state.SkipWithError("the sample instrument did not load with its two extensions");
            break;
        }
        benchmark::DoNotOptimize(camera.getCameraInfoSection());
    }
}
BENCHMARK(BM_CameraLoadWithExtensions)->Unit(benchmark::kMicrosecond);

void BM_CameraLoadCameraInfo(benchmark::State& state)
{
    const QString file = instrumentCopy();
    for (auto _ : state) {
        CPLCameraInfo camera;
        if (!camera.loadCameraInfo(file)) {
            state.SkipWithError("the sample instrument did not pass its checks");
            break;
        }
        benchmark::DoNotOptimize(camera.isXFOV24Attached());
    }
}
BENCHMARK(BM_CameraLoadCameraInfo)->Unit(benchmark::kMicrosecond);

} // namespace
