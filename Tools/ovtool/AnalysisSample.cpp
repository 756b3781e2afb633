#include "AnalysisSample.h"

#include "PLAnalyzedClickInfo.h"
#include "PLStatus.h"

#include <QDir>

const char ANALYSIS_SAMPLE_FOLDER[] = "KL20261105101544_001_IM01";

namespace {

// Each setter's status is kept: the sample is all or nothing.
bool buildSample(CPLAnalyzedClickInfo& result)
{
    using Correction = CPLAnalyzedClickInfo::Correction;
    CPLAnalyzedClickInfo::ImageMath math;
    math.operation = QStringLiteral("A-k*B");
    math.k = 0.85;
    math.aClickNumber = QStringLiteral("KL20261105101544_001");
    math.bClickNumber = QStringLiteral("KL20261104142207_001");
    math.photoClickNumber = QStringLiteral("KL20261105101544_001");
    const int statuses[] = {
        result.create(QLatin1String(ANALYSIS_SAMPLE_FOLDER), CPLAnalyzedClickInfo::Kind::ImageMath),
        result.setFolderOnDisk(QLatin1String(ANALYSIS_SAMPLE_FOLDER)),
        result.setImageMath(math),
        result.setBackgroundClick(QStringLiteral("BK20261101080000_001")),
        result.setCorrection(Correction::Saturated, false),
        result.setCorrection(Correction::CcdCorrected, true),
        result.setCorrection(Correction::BackgroundCorrected, true),
        result.setCorrection(Correction::FlatFieldCorrected, true),
        result.setCorrection(Correction::Rotated, false),
    };
    for (const int status : statuses) {
        if (status != PL_SUCCESS)
            return false;
    }
    return true;
}

} // namespace

QByteArray analysisSampleBytes()
{
    CPLAnalyzedClickInfo result;
    return buildSample(result) ? result.getClickInfoData().toLatin1() : QByteArray();
}

bool writeAnalysisSample(const QString& folder)
{
    const QString resultFolder
        = QDir(folder).filePath(QLatin1String("analysis/") + QLatin1String(ANALYSIS_SAMPLE_FOLDER));
    CPLAnalyzedClickInfo result;
    return QDir().mkpath(resultFolder) && buildSample(result)
        && result.save(resultFolder) == PL_SUCCESS;
}
