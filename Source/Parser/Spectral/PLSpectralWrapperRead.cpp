// Reading a spectral-analysis document back: the load and get operations of
// CPLSpectralWrapper.

#include "PLSpectralWrapper.h"

#include "PLSpectralNames_p.h"
#include "PLStatus.h"
#include "PLXMLReader.h"

#include <QDomElement>

using namespace PLSpectral;

namespace {

// The attributes of one element, read as the writer wrote them; absent or unparsable
// numbers read as 0.
class AttributeReader
{
public:
    explicit AttributeReader(const QDomElement& element)
        : m_element(element)
    {
    }
    QString text(const QString& name) const { return m_element.attribute(name); }
    int integer(const QString& name) const { return text(name).toInt(); }
    double real(const QString& name) const { return text(name).toDouble(); }
    // A wavelength written with "nm" after it: the text before.
    QString wavelength(const QString& name) const
    {
        QString value = text(name);
        if (value.endsWith(NANOMETRES))
            value.chop(NANOMETRES.size());
        return value;
    }

private:
    QDomElement m_element;
};

QList<QDomElement> children(const QDomElement& parent, ElementId id)
{
    return CPLXMLReader::getChildElements(parent, elementName(id));
}

// The attributes of the first child `id` of `parent` (of a null element when absent).
AttributeReader childAttributes(const QDomElement& parent, ElementId id)
{
    return AttributeReader(parent.firstChildElement(elementName(id)));
}

_tagSSpectralAttributes readAttributes(const AttributeReader& a)
{
    return { a.text(DATE_TIME),
             a.text(SEQUENCE_ID),
             a.integer(NUMBER_OF_CLICKS),
             a.text(ACTIVE_IMAGE),
             a.text(TISSUE_PROPERTY),
             a.text(SOURCE_MODEL),
             float(a.real(INDEX_OF_REFRACTION)) };
}

_tagsROIProperties readROIProperties(const QString& name, const AttributeReader& a)
{
    return { name,
             a.text(ROI_SHAPE),
             a.real(XC),
             a.real(YC),
             a.real(ANGLE),
             a.real(WIDTH),
             a.real(HEIGHT),
             a.integer(ROI_PIXELS),
             a.real(AREA),
             a.real(CM_PER_PIXEL),
             a.text(ROI_TYPE),
             a.text(LOCK_POSITION),
             a.text(LOCK_SIZE),
             a.text(BKG_ROI),
             a.text(BKG_ASSOCIATION),
             a.real(FRACTIONAL_PEAK),
             a.text(CONTOUR_DIRECTIONS),
             a.real(CONTOUR_START_X),
             a.real(CONTOUR_START_Y),
             a.real(CONTOUR_PEAK_X),
             a.real(CONTOUR_PEAK_Y),
             a.integer(CONTOUR_X_DELTA),
             a.integer(CONTOUR_Y_DELTA) };
}

// An ROI element of a click holds either the ROI's properties or one measurement.
void readClickROI(const QDomElement& element, _tagSClickInfo* click)
{
    const QDomElement properties = element.firstChildElement(elementName(ROIProperties));
    if (!properties.isNull()) {
        const AttributeReader roi(element);
        click->rois.append(
            { roi.text(ROI_LABEL),
              readROIProperties(roi.text(PLSpectral::ROI), AttributeReader(properties)) });
    }
    for (const QDomElement& measurement : children(element, ROIMeasurements)) {
        const AttributeReader m(measurement);
        click->measurements.append(
            { m.text(FILTER_LABEL), m.real(TOTAL_FLUX), m.real(AVERAGE_RADIANCE) });
    }
}

_tagSClickInfo readClick(const QDomElement& element)
{
    const AttributeReader a(element);
    const AttributeReader filter = childAttributes(element, FilterProperties);
    _tagSClickInfo click { a.text(CLICK_NUMBER),
                           a.wavelength(IMAGE_WAVELENGTH),
                           { filter.wavelength(CENTRAL_WAVELENGTH).toInt(),
                             float(filter.real(BAND_WIDTH)), float(filter.real(AVG_TRANSMISSION)) },
                           {},
                           {} };
    for (const QDomElement& roi : children(element, ClickROI))
        readClickROI(roi, &click);
    return click;
}

_tagSROISpectralResults readResults(const QDomElement& element)
{
    const AttributeReader flux = childAttributes(element, ResultsFlux);
    const AttributeReader depth = childAttributes(element, ResultsDepth);
    return { AttributeReader(element).text(PLSpectral::ROI),
             flux.real(TOTAL_FLUX),
             flux.real(FLUX_STD_DEV),
             flux.text(FLUX_UNITS),
             depth.real(AVERAGE_DEPTH),
             depth.real(DEPTH_STD_DEV),
             depth.text(DEPTH_UNITS) };
}

_tagSPlotValue readPlotValue(const AttributeReader& v)
{
    return { v.real(INTENSITY), v.real(WAVE_LENGTH) };
}

_tagSFitValue readFitValue(const AttributeReader& v)
{
    return { v.real(INTENSITY), v.real(ATTENUATION), v.real(FIT_VALUE), v.real(HORIZONTAL_ERROR),
             v.real(VERTICAL_ERROR) };
}

// The plot or the fit of one ROI: its label, its count `total` and its `valueId` elements.
template<typename Value>
_tagSROIValues<Value> readROIValues(const QDomElement& element, const QString& total,
                                    ElementId valueId, Value (*readValue)(const AttributeReader&))
{
    const AttributeReader a(element);
    _tagSROIValues<Value> results { a.text(ROI_LABEL), a.integer(total), {} };
    for (const QDomElement& value : children(element, valueId))
        results.values.append(readValue(AttributeReader(value)));
    return results;
}

// The result of a get operation: 33 before a load, 16 without `result`, 24 when the element
// is not `present`; else `value` is copied to `result`.
template<typename T> int copyLoaded(bool loaded, const T& value, bool present, T* result)
{
    if (!loaded)
        return PL_NOTHING_TO_WORK_ON;
    if (!result)
        return PL_NULL_ARGUMENT;
    if (!present)
        return PL_KEY_NOT_FOUND;
    *result = value;
    return PL_SUCCESS;
}

template<typename Read> auto readAll(const QDomElement& root, ElementId id, Read read)
{
    QList<decltype(read(root))> records;
    for (const QDomElement& element : children(root, id))
        records.append(read(element));
    return records;
}

} // namespace

int CPLSpectralWrapper::loadSpectralXMLFile(const QString& fileName)
{
    m_bLoaded = false;
    CPLXMLReader reader;
    const int status = reader.loadXMLFile(fileName);
    return status == PL_SUCCESS ? loadSpectralXML(reader) : status;
}

int CPLSpectralWrapper::loadSpectralXMLData(const QByteArray& data)
{
    m_bLoaded = false;
    CPLXMLReader reader;
    const int status = reader.loadXMLData(data);
    return status == PL_SUCCESS ? loadSpectralXML(reader) : status;
}

int CPLSpectralWrapper::loadSpectralXML(const CPLXMLReader& reader)
{
    m_bLoaded = false;
    const QDomElement root = reader.getRootElement();
    if (root.tagName() != elementName(Root))
        return PL_KEY_NOT_FOUND;
    const QDomElement attributes = root.firstChildElement(elementName(Attributes));
    const QDomElement clickInfo = root.firstChildElement(elementName(ClickInfo));
    const QDomElement linearFit = root.firstChildElement(elementName(LinearFitValues));
    m_bHasAttributes = !attributes.isNull();
    m_bHasClickInfo = !clickInfo.isNull();
    m_bHasLinearFit = !linearFit.isNull();

    m_loaded = _tagSSpectralDocument();
    m_loaded.attributes = readAttributes(AttributeReader(attributes));
    m_loaded.nTotalClicks = AttributeReader(clickInfo).integer(TOTAL_CLICKS);
    m_loaded.clicks = readAll(clickInfo, Click, readClick);
    m_loaded.results = readAll(root, Results, readResults);
    m_loaded.plots = readAll(root, PlotResults, [](const QDomElement& element) {
        return readROIValues(element, TOTAL_PLOT_VALUES, PlotValues, readPlotValue);
    });
    m_loaded.fits = readAll(root, FitResults, [](const QDomElement& element) {
        return readROIValues(element, TOTAL_FIT_VALUES, FitValues, readFitValue);
    });
    const AttributeReader fit(linearFit);
    m_loaded.linearFit = { fit.real(LINEAR_FIT_A), fit.real(LINEAR_FIT_B) };
    m_bLoaded = true;
    return PL_SUCCESS;
}

int CPLSpectralWrapper::getSpectralAttributes(_tagSSpectralAttributes* attributes) const
{
    return copyLoaded(m_bLoaded, m_loaded.attributes, m_bHasAttributes, attributes);
}

int CPLSpectralWrapper::getClickInfo(QList<_tagSClickInfo>* clicks, int* totalClicks) const
{
    const int status = copyLoaded(m_bLoaded, m_loaded.clicks, m_bHasClickInfo, clicks);
    if (status == PL_SUCCESS && totalClicks)
        *totalClicks = m_loaded.nTotalClicks;
    return status;
}

int CPLSpectralWrapper::getSpectralAnalysisResults(QList<_tagSROISpectralResults>* results) const
{
    return copyLoaded(m_bLoaded, m_loaded.results, true, results);
}

int CPLSpectralWrapper::getSpectralAnalysisPlotResults(QList<_tagSPlotResults>* plots) const
{
    return copyLoaded(m_bLoaded, m_loaded.plots, true, plots);
}

int CPLSpectralWrapper::getSpectralAnalysisFitResults(QList<_tagSFitResults>* fits) const
{
    return copyLoaded(m_bLoaded, m_loaded.fits, true, fits);
}

int CPLSpectralWrapper::getLinearFitResults(_tagSLinearFit* linearFit) const
{
    return copyLoaded(m_bLoaded, m_loaded.linearFit, m_bHasLinearFit, linearFit);
}

int CPLSpectralWrapper::getSpectralDocument(_tagSSpectralDocument* document) const
{
    return copyLoaded(m_bLoaded, m_loaded, m_bHasAttributes && m_bHasClickInfo && m_bHasLinearFit,
                      document);
}
