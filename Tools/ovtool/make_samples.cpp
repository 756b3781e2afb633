// Writes the bundled samples that the library makes: the acquisitions built with the image
// section builder, the spectral analysis written by CPLSpectralWrapper (spectral/), the
// background library (background/), an image-math result written by CPLAnalyzedClickInfo
// (analysis/) and a sequence of acquisitions with its SequenceInfo.txt (sequence/):
//   make_samples FOLDER     (usually the repository's samples/ folder)
// Times are written in UTC and the analysis's date and time is fixed, so the files are the
// same on every machine; tests check that the files in samples/ are what this program writes.

#include "AnalysisSample.h"
#include "BackgroundSample.h"
#include "PLStatus.h"
#include "SampleAcquisitions.h"
#include "SequenceSample.h"
#include "SpectralSample.h"

#include <QDir>

#include <QCoreApplication>
#include <QStringList>

#include <cstdio>
#include <cstdlib>
#include <ctime>

int main(int argc, char** argv)
{
    setenv("TZ", "UTC", 1);
    tzset();
    QCoreApplication app(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() != 2) {
        std::fprintf(stderr, "usage: make_samples FOLDER\n");
        return 2;
    }
    const QDir folder(arguments.at(1));
    if (!OvSamples::writeAcquisitions(folder.path(), OvSamples::bundledAcquisitions())
        || !folder.mkpath(QStringLiteral("spectral"))
        || writeSpectralSample(folder.filePath(QStringLiteral("spectral/SpectralAnalysis.xml")))
            != PL_SUCCESS
        || writeBackgroundSample(folder.filePath(QStringLiteral("background"))) != PL_SUCCESS
        || !writeAnalysisSample(folder.path())
        || OvSamples::writeSequenceSample(folder.filePath(QStringLiteral("sequence")))
            != PL_SUCCESS) {
        std::fprintf(stderr, "make_samples: cannot write below %s\n", argv[1]);
        return 1;
    }
    return 0;
}
