#include "PLSpectralWrapper.h"

#include "PLFileWriter_p.h"
#include "PLLogging_p.h"
#include "PLSpectralNames_p.h"
#include "PLStatus.h"
#include "PLXMLWriter.h"

#include <QDate>
#include <QLocale>
#include <QTime>
#include <QtDebug>

#include <cmath>
#include <new>

using namespace PLSpectral;

const _tagSElementInfo gsElementInfo[SPECTRAL_ELEMENT_COUNT] = {
    { Root, "OV3.0.SpectralAnalysis" },
    { Attributes, "OV3.0.SpectralAnalysis.Attributes" },
    { ClickInfo, "OV3.0.SpectralAnalysis.ClickInfo" },
    { Click, "OV3.0.SpectralAnalysis.ClickInfo.Click" },
    { FilterProperties, "OV3.0.SpectralAnalysis.Click.Filter.Properties" },
    { ClickROI, "OV3.0.SpectralAnalysis.Click.ROI" },
    { ROIProperties, "OV3.0.SpectralAnalysis.Click.ROI.Properties" },
    { ROIMeasurements, "OV3.0.SpectralAnalysis.Click.ROI.Measurements" },
    { Results, "OV3.0.SpectralAnalysis.Results" },
    { ResultsFlux, "OV3.0.SpectralAnalysis.Results.Flux" },
    { ResultsDepth, "OV3.0.SpectralAnalysis.Results.Depth" },
    { PlotResults, "OV3.0.SpectralAnalysis.Plot.Results" },
    { PlotValues, "OV3.0.SpectralAnalysis.Plot.Values" },
    { FitResults, "OV3.0.SpectralAnalysis.Fit.Results" },
    { FitValues, "OV3.0.SpectralAnalysis.Fit.Values" },
    { LinearFitValues, "OV3.0.SpectralAnalysis.Linear.Fit.Values" },
};

namespace {

const QLatin1String DECLARATION("<?xml version=\"1.0\" encoding=\"UTF-8\"?>");
const QLatin1String DOCTYPE_AND_ROOT("<!DOCTYPE OV3.0.SpectralAnalysis><OV3.0.SpectralAnalysis>");

QString text(int value)
{
    return QStringLiteral("%1").arg(value);
}

// "%g": 6 significant digits, no field width; "NaN", "INF" and "-INF" as XML Schema writes
// them (QString::toDouble() reads them back).
QString text(double value)
{
    if (std::isnan(value))
        return QStringLiteral("NaN");
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("INF") : QStringLiteral("-INF");
    return QStringLiteral("%1").arg(value, 0, 'g');
}

QString nanometres(const QString& wavelength)
{
    return QStringLiteral("%1%2").arg(wavelength, NANOMETRES);
}

AttrMap roiPropertiesAttributes(const _tagsROIProperties& roi)
{
    return AttrMap { { ROI_SHAPE, roi.strROIShape },
                     { XC, text(roi.dXc) },
                     { YC, text(roi.dYc) },
                     { ANGLE, text(roi.dAngle) },
                     { WIDTH, text(roi.dWidth) },
                     { HEIGHT, text(roi.dHeight) },
                     { ROI_PIXELS, text(roi.nROIPixels) },
                     { AREA, text(roi.dArea) },
                     { CM_PER_PIXEL, text(roi.dCmPerPixel) },
                     { ROI_TYPE, roi.strROIType },
                     { LOCK_POSITION, roi.strLockPosition },
                     { LOCK_SIZE, roi.strLockSize },
                     { BKG_ROI, roi.strBkgROI },
                     { BKG_ASSOCIATION, roi.strBkgAssociation },
                     { FRACTIONAL_PEAK, text(roi.dFractionalPeak) },
                     { CONTOUR_DIRECTIONS, roi.strContourDirections },
                     { CONTOUR_START_X, text(roi.dContourStartX) },
                     { CONTOUR_START_Y, text(roi.dContourStartY) },
                     { CONTOUR_PEAK_X, text(roi.dContourPeakX) },
                     { CONTOUR_PEAK_Y, text(roi.dContourPeakY) },
                     { CONTOUR_X_DELTA, text(roi.nContourXDelta) },
                     { CONTOUR_Y_DELTA, text(roi.nContourYDelta) } };
}

} // namespace

CPLSpectralWrapper::CPLSpectralWrapper() = default;

CPLSpectralWrapper::~CPLSpectralWrapper()
{
    discardDocument();
}

int CPLSpectralWrapper::createSpectralXMLFile(const QString& fileName)
{
    discardDocument();
    return PL_GUARDED({
        auto file = std::make_unique<CPLFileWriter>(fileName, CPLFileWriter::Mode::Replace);
        const int status = file->open(PL_LOCK_WAIT_MS);
        if (status != PL_SUCCESS)
            return status;
        m_file = std::move(file);
        m_strFileName = fileName;
        startDocument(m_file->device());
        return PL_SUCCESS;
    });
}

int CPLSpectralWrapper::createSpectralXMLDocument(QIODevice* device)
{
    discardDocument();
    if (!device)
        return PL_NULL_ARGUMENT;
    if (!device->isWritable())
        return PL_INVALID_ARGUMENT;
    m_strFileName = QStringLiteral("spectral document");
    startDocument(device);
    return PL_SUCCESS;
}

void CPLSpectralWrapper::startDocument(QIODevice* device)
{
    try {
        m_writer = std::make_unique<CPLXMLWriter>(device, nullptr);
    } catch (const std::bad_alloc&) {
        qCritical("Unable To Allocate Memory for Operation ");
        m_file.reset();
        return;
    }
    m_writer->writeRaw(DECLARATION);
    m_writer->newLine();
    m_writer->writeRaw(DOCTYPE_AND_ROOT);
    m_writer->newLine();
}

void CPLSpectralWrapper::discardDocument()
{
    m_bRefused = false;
    m_writer.reset();
    if (m_file)
        m_file->cancel();
    m_file.reset();
}

void CPLSpectralWrapper::setDateTimeText(const QString& dateTime)
{
    m_strFixedDateTime = dateTime;
}

void CPLSpectralWrapper::setDateAndTime()
{
    if (!m_strFixedDateTime.isEmpty()) {
        m_strDateTime = m_strFixedDateTime;
        return;
    }
    const QLocale c = QLocale::c();
    m_strDateTime = c.toString(QTime::currentTime(), QStringLiteral("hh:mm:ss"))
        + QLatin1String(", ") + c.toString(QDate::currentDate(), QStringLiteral("ddd MMM d yyyy"));
}

int CPLSpectralWrapper::setSpectralAttributes(const QString& sequenceID, int numberOfClicks,
                                              const QString& activeImage,
                                              const QString& tissueProperty,
                                              const QString& sourceModel, float indexOfRefraction)
{
    setDateAndTime();
    return writeAttributes(m_strDateTime,
                           { QString(), sequenceID, numberOfClicks, activeImage, tissueProperty,
                             sourceModel, indexOfRefraction });
}

int CPLSpectralWrapper::writeAttributes(const QString& dateTime,
                                        const _tagSSpectralAttributes& attributes)
{
    if (const int status = mayWrite({ dateTime, attributes.strSequenceID, attributes.strActiveImage,
                                      attributes.strTissueProperty, attributes.strSourceModel }))
        return status;
    return writeAtom(Attributes,
                     { { DATE_TIME, dateTime },
                       { SEQUENCE_ID, attributes.strSequenceID },
                       { NUMBER_OF_CLICKS, text(attributes.nNumberOfClicks) },
                       { ACTIVE_IMAGE, attributes.strActiveImage },
                       { TISSUE_PROPERTY, attributes.strTissueProperty },
                       { SOURCE_MODEL, attributes.strSourceModel },
                       { INDEX_OF_REFRACTION, text(double(attributes.fIndexOfRefraction)) } });
}

int CPLSpectralWrapper::setOpenClickInfo(int totalClicks)
{
    return writeOpen(ClickInfo, { { TOTAL_CLICKS, text(totalClicks) } });
}

int CPLSpectralWrapper::setClickNumberInfo(const QString& clickNumber, const QString& wavelength)
{
    if (const int status = mayWrite({ clickNumber, wavelength }))
        return status;
    return writeOpen(
        Click, { { CLICK_NUMBER, clickNumber }, { IMAGE_WAVELENGTH, nanometres(wavelength) } });
}

int CPLSpectralWrapper::setClickNumberFilterProperties(int centralWavelength, float bandWidth,
                                                       float avgTransmission)
{
    return writeAtom(FilterProperties,
                     { { CENTRAL_WAVELENGTH, nanometres(text(centralWavelength)) },
                       { BAND_WIDTH, text(double(bandWidth)) },
                       { AVG_TRANSMISSION, text(double(avgTransmission)) } });
}

int CPLSpectralWrapper::setClickNumberROIProperties(const QString& roiLabel,
                                                    const _tagsROIProperties& roi, bool useLabel)
{
    if (const int status = mayWrite({ roiLabel, roi.strROIName, roi.strROIShape, roi.strROIType,
                                      roi.strLockPosition, roi.strLockSize, roi.strBkgROI,
                                      roi.strBkgAssociation, roi.strContourDirections }))
        return status;
    writeOpen(ClickROI,
              { { PLSpectral::ROI, roi.strROIName },
                { ROI_LABEL, useLabel ? roiLabel : roi.strROIName } });
    writeAtom(ROIProperties, roiPropertiesAttributes(roi));
    return writeClose(ClickROI);
}

int CPLSpectralWrapper::setROIMeasurementsProperties(const QString& filterLabel, double totalFlux,
                                                     double averageRadiance)
{
    if (const int status = mayWrite({ filterLabel }))
        return status;
    writeOpen(ClickROI, AttrMap());
    writeAtom(ROIMeasurements,
              { { FILTER_LABEL, filterLabel },
                { TOTAL_FLUX, text(totalFlux) },
                { AVERAGE_RADIANCE, text(averageRadiance) } });
    return writeClose(ClickROI);
}

int CPLSpectralWrapper::setCloseClickNumberInfo()
{
    return writeClose(Click);
}

int CPLSpectralWrapper::setCloseClickInfo()
{
    return writeClose(ClickInfo);
}

int CPLSpectralWrapper::setSpectralAnalysisResults(const QString& roi, double totalFlux,
                                                   double fluxStdDev, const QString& fluxUnits,
                                                   double averageDepth, double depthStdDev,
                                                   const QString& depthUnits)
{
    if (const int status = mayWrite({ roi, fluxUnits, depthUnits }))
        return status;
    writeOpen(Results, { { PLSpectral::ROI, roi } });
    writeAtom(ResultsFlux,
              { { TOTAL_FLUX, text(totalFlux) },
                { FLUX_STD_DEV, text(fluxStdDev) },
                { FLUX_UNITS, fluxUnits } });
    writeAtom(ResultsDepth,
              { { AVERAGE_DEPTH, text(averageDepth) },
                { DEPTH_STD_DEV, text(depthStdDev) },
                { DEPTH_UNITS, depthUnits } });
    return writeClose(Results);
}

int CPLSpectralWrapper::setOpenSpectralAnalysisPlotResults(const QString& roiLabel,
                                                           int totalPlotValues)
{
    if (const int status = mayWrite({ roiLabel }))
        return status;
    return writeOpen(PlotResults,
                     { { ROI_LABEL, roiLabel }, { TOTAL_PLOT_VALUES, text(totalPlotValues) } });
}

int CPLSpectralWrapper::setSpectralAnalysisPlotResults(double intensity, double waveLength)
{
    return writeAtom(PlotValues,
                     { { INTENSITY, text(intensity) }, { WAVE_LENGTH, text(waveLength) } });
}

int CPLSpectralWrapper::setCloseSpectralAnalysisPlotResults()
{
    return writeClose(PlotResults);
}

int CPLSpectralWrapper::setOpenSpectralAnalysisFitResults(const QString& roiLabel,
                                                          int totalFitValues)
{
    if (const int status = mayWrite({ roiLabel }))
        return status;
    return writeOpen(FitResults,
                     { { ROI_LABEL, roiLabel }, { TOTAL_FIT_VALUES, text(totalFitValues) } });
}

int CPLSpectralWrapper::setSpectralAnalysisFitResults(double intensity, double attenuation,
                                                      double fitValue, double horizontalError,
                                                      double verticalError)
{
    return writeAtom(FitValues,
                     { { INTENSITY, text(intensity) },
                       { ATTENUATION, text(attenuation) },
                       { FIT_VALUE, text(fitValue) },
                       { HORIZONTAL_ERROR, text(horizontalError) },
                       { VERTICAL_ERROR, text(verticalError) } });
}

int CPLSpectralWrapper::setCloseSpectralAnalysisFitResults()
{
    return writeClose(FitResults);
}

int CPLSpectralWrapper::setLinearFitResults(double a, double b)
{
    return writeAtom(LinearFitValues, { { LINEAR_FIT_A, text(a) }, { LINEAR_FIT_B, text(b) } });
}

int CPLSpectralWrapper::setCloseSpectralAnalysis()
{
    if (!m_writer)
        return PL_NOTHING_TO_WORK_ON;
    if (m_bRefused) {
        // The document holds a refused text: it is not saved.
        discardDocument();
        return PL_INVALID_ARGUMENT;
    }
    writeClose(Root);
    const bool written = m_writer->flush();
    m_writer.reset();
    if (!m_file)
        return written ? PL_SUCCESS : PL_SHORT_WRITE;
    // After a failed write (which the file writer has reported) nothing is committed, and
    // destroying the writer leaves the old file as it was.
    const int status = written ? m_file->commit() : PL_SHORT_WRITE;
    m_file.reset();
    return status;
}

int CPLSpectralWrapper::writeSpectralDocument(const _tagSSpectralDocument& document)
{
    const _tagSSpectralAttributes& attributes = document.attributes;
    setDateAndTime();
    writeAttributes(attributes.strDateTime.isEmpty() ? m_strDateTime : attributes.strDateTime,
                    attributes);
    setOpenClickInfo(document.nTotalClicks);
    for (const _tagSClickInfo& click : document.clicks) {
        setClickNumberInfo(click.strClickNumber, click.strWavelength);
        setClickNumberFilterProperties(click.filter.nCentralWavelength, click.filter.fBandWidth,
                                       click.filter.fAvgTransmission);
        for (const _tagSClickROI& roi : click.rois)
            setClickNumberROIProperties(roi.strROILabel, roi.properties, true);
        for (const _tagSROIMeasurement& measurement : click.measurements)
            setROIMeasurementsProperties(measurement.strFilterLabel, measurement.dTotalFlux,
                                         measurement.dAverageRadiance);
        setCloseClickNumberInfo();
    }
    setCloseClickInfo();
    for (const _tagSROISpectralResults& result : document.results)
        setSpectralAnalysisResults(result.strROI, result.dTotalFlux, result.dFluxStdDev,
                                   result.strFluxUnits, result.dAverageDepth, result.dDepthStdDev,
                                   result.strDepthUnits);
    for (const _tagSPlotResults& plot : document.plots) {
        setOpenSpectralAnalysisPlotResults(plot.strROILabel, plot.nTotalValues);
        for (const _tagSPlotValue& value : plot.values)
            setSpectralAnalysisPlotResults(value.dIntensity, value.dWaveLength);
        setCloseSpectralAnalysisPlotResults();
    }
    for (const _tagSFitResults& fit : document.fits) {
        setOpenSpectralAnalysisFitResults(fit.strROILabel, fit.nTotalValues);
        for (const _tagSFitValue& value : fit.values)
            setSpectralAnalysisFitResults(value.dIntensity, value.dAttenuation, value.dFitValue,
                                          value.dHorizontalError, value.dVerticalError);
        setCloseSpectralAnalysisFitResults();
    }
    setLinearFitResults(document.linearFit.dA, document.linearFit.dB);
    return setCloseSpectralAnalysis();
}

int CPLSpectralWrapper::mayWrite(std::initializer_list<QString> texts)
{
    if (!m_writer)
        return PL_NOTHING_TO_WORK_ON;
    if (m_bRefused)
        return PL_INVALID_ARGUMENT;
    for (const QString& text : texts) {
        const int bad = CPLXMLWriter::nonXmlCharacter(text);
        if (bad >= 0) {
            qCWarning(lcOvXml).noquote()
                << QStringLiteral("%1: a text holds U+%2, which XML cannot carry; the document "
                                  "is not saved")
                       .arg(m_strFileName,
                            QString::number(text.at(bad).unicode(), 16)
                                .toUpper()
                                .rightJustified(4, QLatin1Char('0')));
            m_bRefused = true;
            return PL_INVALID_ARGUMENT;
        }
    }
    return PL_SUCCESS;
}

int CPLSpectralWrapper::writeOpen(int elementId, const AttrMap& attrs)
{
    const int status = mayWrite();
    if (status == PL_SUCCESS)
        m_writer->writeOpenTag(elementName(ElementId(elementId)), attrs);
    return status;
}

int CPLSpectralWrapper::writeAtom(int elementId, const AttrMap& attrs)
{
    const int status = mayWrite();
    if (status == PL_SUCCESS)
        m_writer->writeAtomTag(elementName(ElementId(elementId)), attrs);
    return status;
}

int CPLSpectralWrapper::writeClose(int elementId)
{
    const int status = mayWrite();
    if (status == PL_SUCCESS)
        m_writer->writeCloseTag(elementName(ElementId(elementId)));
    return status;
}
