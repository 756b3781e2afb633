#ifndef PLSPECTRALWRAPPER_H
#define PLSPECTRALWRAPPER_H

#include "PLXMLWriter.h"
#include "ovparser_global.h"

#include <QList>
#include <QString>

#include <initializer_list>
#include <memory>

class CPLXMLReader;
class QByteArray;
class QIODevice;
class CPLFileWriter;

// One element of the spectral-analysis document: its id and its name.
struct _tagSElementInfo
{
    qint32 nElementId;
    char szElementName[152];
};

// The element names of the spectral-analysis document, by id: 0 the root
// "OV3.0.SpectralAnalysis" to 15 "OV3.0.SpectralAnalysis.Linear.Fit.Values".
enum { SPECTRAL_ELEMENT_COUNT = 16 };
OVPARSER_EXPORT extern const _tagSElementInfo gsElementInfo[SPECTRAL_ELEMENT_COUNT];

// The records below hold what the set operations of CPLSpectralWrapper write and what its
// get operations read back, one member per attribute, in the order of the parameters.
// Floating-point values are written with 6 significant digits ("%g"), so they read back
// rounded to 6 significant digits; not-a-number is written "NaN" and the infinities "INF"
// and "-INF" (the forms of XML Schema), which read back as NaN and the infinities. Integers
// and texts read back exactly, tabs and line breaks included (they are written as character
// references). A text that XML cannot carry is refused (see the set operations).

// The analysis attributes ("OV3.0.SpectralAnalysis.Attributes").
struct _tagSSpectralAttributes
{
    QString strDateTime; // "Date.Time"
    QString strSequenceID; // "SequenceID"
    int nNumberOfClicks = 0; // "No.Of.Clicks"
    QString strActiveImage; // "Active.Image"
    QString strTissueProperty; // "Tissue.Property"
    QString strSourceModel; // "Source.Model"
    float fIndexOfRefraction = 0; // "Index.of.Refraction"
};

// The filter of one click ("...Click.Filter.Properties").
struct _tagSFilterProperties
{
    int nCentralWavelength = 0; // "Central.Wavelength", in nm
    float fBandWidth = 0; // "Band.Width"
    float fAvgTransmission = 0; // "Avg.Transmission"
};

// The properties of one ROI: its name ("ROI" on "...Click.ROI") and the attributes of
// "...Click.ROI.Properties".
struct _tagsROIProperties
{
    QString strROIName; // "ROI"
    QString strROIShape; // "ROI.Shape"
    double dXc = 0; // "Xc"
    double dYc = 0; // "Yc"
    double dAngle = 0; // "Angle"
    double dWidth = 0; // "Width"
    double dHeight = 0; // "Height"
    int nROIPixels = 0; // "ROI.Pixels"
    double dArea = 0; // "Area"
    double dCmPerPixel = 0; // "CmPerPixel"
    QString strROIType; // "ROI.Type"
    QString strLockPosition; // "Lock.Position"
    QString strLockSize; // "Lock.Size"
    QString strBkgROI; // "Bkg.ROI"
    QString strBkgAssociation; // "Bkg.Association"
    double dFractionalPeak = 0; // "Fractional.Peak"
    QString strContourDirections; // "Contour.Directions"
    double dContourStartX = 0; // "Contour.StartX"
    double dContourStartY = 0; // "Contour.StartY"
    double dContourPeakX = 0; // "Contour.PeakX"
    double dContourPeakY = 0; // "Contour.PeakY"
    int nContourXDelta = 0; // "Contour.XDelta"
    int nContourYDelta = 0; // "Contour.YDelta"
};

// One ROI of a click as setClickNumberROIProperties() writes it.
struct _tagSClickROI
{
    QString strROILabel; // "ROI.Label"
    _tagsROIProperties properties;
};

// One measurement of a click ("...Click.ROI.Measurements").
struct _tagSROIMeasurement
{
    QString strFilterLabel; // "Filter.Label"
    double dTotalFlux = 0; // "Total.Flux"
    double dAverageRadiance = 0; // "Average.Radiance"
};

// One click ("...ClickInfo.Click") with its filter, ROIs and measurements, each list in
// document order.
struct _tagSClickInfo
{
    QString strClickNumber; // "Click.Number"
    QString strWavelength; // "Image.Wavelength" without its "nm"
    _tagSFilterProperties filter;
    QList<_tagSClickROI> rois;
    QList<_tagSROIMeasurement> measurements;
};

// The flux and depth results of one ROI ("...Results" with "...Results.Flux" and
// "...Results.Depth").
struct _tagSROISpectralResults
{
    QString strROI; // "ROI"
    double dTotalFlux = 0; // "Total.Flux"
    double dFluxStdDev = 0; // "Flux.Std.Dev"
    QString strFluxUnits; // "Flux.Units"
    double dAverageDepth = 0; // "Average.Depth"
    double dDepthStdDev = 0; // "Depth.Std.Dev"
    QString strDepthUnits; // "Depth.Units"
};

// One plotted value ("...Plot.Values").
struct _tagSPlotValue
{
    double dIntensity = 0; // "Intensity"
    double dWaveLength = 0; // "Wave.Length"
};

// One fit value ("...Fit.Values").
struct _tagSFitValue
{
    double dIntensity = 0; // "Intensity"
    double dAttenuation = 0; // "Attenuation"
    double dFitValue = 0; // "Fit.Value"
    double dHorizontalError = 0; // "Horizontal.Error"
    double dVerticalError = 0; // "Vertical.Error"
};

// The plot or the fit of one ROI ("...Plot.Results", "...Fit.Results"): the count of values
// it declares ("Total.Plot.Values", "Total.Fit.Values") and the values it holds.
template<typename Value> struct _tagSROIValues
{
    QString strROILabel; // "ROI.Label"
    int nTotalValues = 0;
    QList<Value> values;
};
using _tagSPlotResults = _tagSROIValues<_tagSPlotValue>;
using _tagSFitResults = _tagSROIValues<_tagSFitValue>;

// The linear fit ("...Linear.Fit.Values").
struct _tagSLinearFit
{
    double dA = 0; // "Linear.fit.value.A"
    double dB = 0; // "Linear.fit.value.B"
};

// A whole spectral-analysis document.
struct _tagSSpectralDocument
{
    _tagSSpectralAttributes attributes;
    int nTotalClicks = 0; // "Total.Clicks" on "...ClickInfo"
    QList<_tagSClickInfo> clicks;
    QList<_tagSROISpectralResults> results;
    QList<_tagSPlotResults> plots;
    QList<_tagSFitResults> fits;
    _tagSLinearFit linearFit;
};

// Writes and reads the results of a spectral analysis, one XML file.
//
// Writing: createSpectralXMLFile(), then the set operations in document order, each writing
// one element (or opening or closing one), then setCloseSpectralAnalysis(). The file holds
// the XML declaration on its first line, the doctype and the root's start tag on its second,
// and every element after that on one third line without indentation:
//   <?xml version="1.0" encoding="UTF-8"?>
//   <!DOCTYPE OV3.0.SpectralAnalysis><OV3.0.SpectralAnalysis>
//   <OV3.0.SpectralAnalysis.Attributes Active.Image="..." .../><OV3.0.SpectralAnalysis...
// The wrapper does not check the nesting; the caller calls the operations in this order:
// setSpectralAttributes; setOpenClickInfo, then per click setClickNumberInfo,
// setClickNumberFilterProperties, per ROI setClickNumberROIProperties and
// setROIMeasurementsProperties, setCloseClickNumberInfo; setCloseClickInfo; per ROI
// setSpectralAnalysisResults; per ROI the plot (open, values, close); per ROI the fit (open,
// values, close); setLinearFitResults; setCloseSpectralAnalysis.
//
// Numbers: integers in decimal, floating-point values with "%g" (6 significant digits: 0.5
// gives "0.5", 1234567 gives "1.23457e+06") or as "NaN", "INF", "-INF", wavelengths followed
// by "nm".
//
// Nothing lost: the file is saved as every file of the library is (its lock "<file>.lock" is
// held while the document is written; the new content replaces the file through the lock
// file and a rename, or is written in place where a rename would not keep the file what it
// was), and only when setCloseSpectralAnalysis() has written the whole document; its status
// tells whether it did. A document left unfinished (the wrapper destroyed, or
// createSpectralXMLFile() called again, before setCloseSpectralAnalysis()) is discarded: the
// file keeps its old content, or stays absent, and the lock is released. The set operations
// report nothing and write nothing while no file is open.
//
// Reading: loadSpectralXMLFile() reads a document, then the get operations return what the
// set operations wrote, in the records above. A wrapper is either written or read; loading
// does not touch a document being written.
class OVPARSER_EXPORT CPLSpectralWrapper
{
public:
    CPLSpectralWrapper();
    virtual ~CPLSpectralWrapper();
    CPLSpectralWrapper(const CPLSpectralWrapper&) = delete;
    CPLSpectralWrapper& operator=(const CPLSpectralWrapper&) = delete;

    // Starts a new document for `fileName`: writes the declaration line and the line with
    // the doctype and the root's start tag. An unfinished document is discarded first.
    // Returns 11 when the file or its lock cannot be created or opened, 64 when the path
    // names a FIFO, device or socket, 66 when another editor holds the file's lock (after
    // waiting PL_LOCK_WAIT_MS), 65 when memory runs out (the set operations then write
    // nothing), else 0.
    int createSpectralXMLFile(const QString& fileName);
    // The same on a device the caller owns, open for writing, which must outlive the
    // document; it is written as the document goes and is not closed. Returns 16 for a null
    // device, 31 when it is not writable, else 0.
    int createSpectralXMLDocument(QIODevice* device);

    // The text written as "Date.Time" by the next setSpectralAttributes(). By default it is
    // the current local time and date when setSpectralAttributes() is called, as
    // "hh:mm:ss, ddd MMM d yyyy" in English ("14:22:07, Wed Nov 4 2026"). A text set here is
    // written instead, every time, until an empty text restores the current time.
    void setDateTimeText(const QString& dateTime);
    // Takes the date-time text now (what setDateTimeText() fixed, or the current time).
    void setDateAndTime();
    // The date-time text taken last.
    QString getDateTimeText() const { return m_strDateTime; }

    // The set operations, in document order. Each writes the element named on it and returns
    // 0; 33 when no document is being written; 31 for a text that XML cannot carry
    // (CPLXMLWriter::isXmlText(): a NUL or another control character but tab, LF and CR,
    // U+FFFE, U+FFFF, a lone surrogate), the date-time text included. A refused text writes
    // nothing and spoils the document: every later operation writes nothing and returns 31,
    // and setCloseSpectralAnalysis() discards it (a file keeps its old content).
    // "...Attributes": "Date.Time" is taken now (setDateAndTime()).
    int setSpectralAttributes(const QString& sequenceID, int numberOfClicks,
                              const QString& activeImage, const QString& tissueProperty,
                              const QString& sourceModel, float indexOfRefraction);
    // Opens "...ClickInfo".
    int setOpenClickInfo(int totalClicks);
    // Opens "...ClickInfo.Click"; "Image.Wavelength" is `wavelength` followed by "nm".
    int setClickNumberInfo(const QString& clickNumber, const QString& wavelength);
    // "...Click.Filter.Properties"; "Central.Wavelength" is the number followed by "nm".
    int setClickNumberFilterProperties(int centralWavelength, float bandWidth,
                                       float avgTransmission);
    // "...Click.ROI" holding "...Click.ROI.Properties". "ROI" is the record's ROI name.
    // "ROI.Label" is `roiLabel` when `useLabel` is set; otherwise the ROI has no label of its
    // own and its name is written as its label too (and reads back as its label).
    int setClickNumberROIProperties(const QString& roiLabel, const _tagsROIProperties& roi,
                                    bool useLabel);
    // "...Click.ROI" (without attributes) holding "...Click.ROI.Measurements".
    int setROIMeasurementsProperties(const QString& filterLabel, double totalFlux,
                                     double averageRadiance);
    // Closes "...ClickInfo.Click".
    int setCloseClickNumberInfo();
    // Closes "...ClickInfo".
    int setCloseClickInfo();
    // "...Results" holding "...Results.Flux" and "...Results.Depth".
    int setSpectralAnalysisResults(const QString& roi, double totalFlux, double fluxStdDev,
                                   const QString& fluxUnits, double averageDepth,
                                   double depthStdDev, const QString& depthUnits);
    // Opens "...Plot.Results".
    int setOpenSpectralAnalysisPlotResults(const QString& roiLabel, int totalPlotValues);
    // "...Plot.Values".
    int setSpectralAnalysisPlotResults(double intensity, double waveLength);
    // Closes "...Plot.Results".
    int setCloseSpectralAnalysisPlotResults();
    // Opens "...Fit.Results".
    int setOpenSpectralAnalysisFitResults(const QString& roiLabel, int totalFitValues);
    // "...Fit.Values".
    int setSpectralAnalysisFitResults(double intensity, double attenuation, double fitValue,
                                      double horizontalError, double verticalError);
    // Closes "...Fit.Results".
    int setCloseSpectralAnalysisFitResults();
    // "...Linear.Fit.Values".
    int setLinearFitResults(double a, double b);
    // Closes the root and ends the document: a file then replaces the old one. Returns 0
    // when the whole document was written, 31 when a write, sync, close or rename failed (a
    // file then keeps its old content; getLastSystemError() tells why) or when a set
    // operation refused a text (nothing is written, the old file stays), 33 when no document
    // was being written.
    int setCloseSpectralAnalysis();

    // Writes a whole document from a record, from setSpectralAttributes() to
    // setCloseSpectralAnalysis(), whose status it returns; every ROI with its label. The
    // record's date-time text is written as "Date.Time" (the current time when it is
    // empty). createSpectralXMLFile() or createSpectralXMLDocument() comes first.
    int writeSpectralDocument(const _tagSSpectralDocument& document);

    // Reads a document. Returns 11 when the file cannot be read, 50 when it is not
    // well-formed XML (the place is logged), 24 when its root element is not
    // "OV3.0.SpectralAnalysis", else 0. Elements the document lacks are reported by the get
    // operation that needs them. An attribute that is absent reads as an empty text or 0,
    // as does a number that does not parse. A failed load leaves nothing loaded.
    int loadSpectralXMLFile(const QString& fileName);
    // The same on XML in memory (no 11).
    int loadSpectralXMLData(const QByteArray& data);
    // The same on a document `reader` has parsed (whose getErrorLine() and getErrorColumn()
    // tell where a malformed one failed): 24 for another root, or none, else 0.
    int loadSpectralXML(const CPLXMLReader& reader);

    // The get operations return 33 when no document is loaded, 16 for a null pointer, and
    // 24 when the document lacks the element asked for; else 0.
    // The analysis attributes ("...Attributes").
    int getSpectralAttributes(_tagSSpectralAttributes* attributes) const;
    // The clicks, and the "Total.Clicks" of "...ClickInfo" (which may differ from their
    // number). 24 without "...ClickInfo".
    int getClickInfo(QList<_tagSClickInfo>* clicks, int* totalClicks = nullptr) const;
    // The results, plots and fits per ROI, in document order; an empty list when there is
    // none (never 24).
    int getSpectralAnalysisResults(QList<_tagSROISpectralResults>* results) const;
    int getSpectralAnalysisPlotResults(QList<_tagSPlotResults>* plots) const;
    int getSpectralAnalysisFitResults(QList<_tagSFitResults>* fits) const;
    // The linear fit ("...Linear.Fit.Values").
    int getLinearFitResults(_tagSLinearFit* linearFit) const;
    // The whole document; 24 when it lacks "...Attributes", "...ClickInfo" or
    // "...Linear.Fit.Values".
    int getSpectralDocument(_tagSSpectralDocument* document) const;

private:
    // Starts writing on the device set up by the create operations.
    void startDocument(QIODevice* device);
    // Ends an unfinished document without replacing any file.
    void discardDocument();
    int writeAttributes(const QString& dateTime, const _tagSSpectralAttributes& attributes);
    // Whether the next element may be written: 33 without a document, 31 when it was spoiled
    // before or `texts` hold one that XML cannot carry (the document is spoiled then), else 0.
    int mayWrite(std::initializer_list<QString> texts = {});
    int writeOpen(int elementId, const AttrMap& attrs);
    int writeAtom(int elementId, const AttrMap& attrs);
    int writeClose(int elementId);

    std::unique_ptr<CPLFileWriter> m_file;
    std::unique_ptr<CPLXMLWriter> m_writer;
    QString m_strFileName; // of the document being written, for messages
    bool m_bRefused = false; // the document being written holds a refused text
    QString m_strDateTime;
    QString m_strFixedDateTime;
    // The document read by the last successful load, and which of its single elements it
    // holds.
    _tagSSpectralDocument m_loaded;
    bool m_bLoaded = false;
    bool m_bHasAttributes = false;
    bool m_bHasClickInfo = false;
    bool m_bHasLinearFit = false;
};

#endif // PLSPECTRALWRAPPER_H
