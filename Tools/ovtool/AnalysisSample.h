#ifndef OVTOOL_ANALYSISSAMPLE_H
#define OVTOOL_ANALYSISSAMPLE_H

// The bundled analysis result: an image-math result of the two luminescent sample
// acquisitions, written by CPLAnalyzedClickInfo as
// samples/analysis/<ANALYSIS_SAMPLE_FOLDER>/AnalyzedClickInfo.txt.

#include <QByteArray>
#include <QString>

extern const char ANALYSIS_SAMPLE_FOLDER[];

// The sample's "AnalyzedClickInfo.txt", as the library writes it.
QByteArray analysisSampleBytes();
// Writes it below `folder` (the samples folder): "analysis/<ANALYSIS_SAMPLE_FOLDER>/". False
// when it cannot be written.
bool writeAnalysisSample(const QString& folder);

#endif // OVTOOL_ANALYSISSAMPLE_H
