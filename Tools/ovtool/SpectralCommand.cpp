#include "Commands.h"
#include "Tool.h"

#include "PLSpectralWrapper.h"
#include "PLStatus.h"
#include "PLXMLReader.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace {

const QString NOTES = QStringLiteral(
    "The summary lists the analysis attributes; each click with its image wavelength, its\n"
    "filter and the number of ROIs and measurements it holds; per ROI the total flux and\n"
    "the average depth with their standard deviations and units; the number of plot and\n"
    "fit values per ROI (with the number the file declares, when that differs); and the\n"
    "linear fit. Numbers are shown as the file holds them (6 significant digits).\n"
    "\n"
    "With --json the output is one JSON object, UTF-8:\n"
    "  { \"file\": \"FILE as given\",\n"
    "    \"attributes\": { \"Date.Time\": \"...\", \"SequenceID\": \"...\", \"No.Of.Clicks\": 4,\n"
    "                    \"Active.Image\": \"...\", \"Tissue.Property\": \"...\",\n"
    "                    \"Source.Model\": \"...\", \"Index.of.Refraction\": 1.4 },\n"
    "    \"totalClicks\": 4,\n"
    "    \"clicks\": [ { \"clickNumber\": \"...\", \"wavelength\": \"560\",\n"
    "                  \"filter\": { \"centralWavelength\": 560, \"bandWidth\": 20,\n"
    "                              \"avgTransmission\": 0.82 },\n"
    "                  \"rois\": 2, \"measurements\": 2 } ],\n"
    "    \"results\": [ { \"roi\": \"ROI 1\", \"totalFlux\": 1.37e9, \"fluxStdDev\": 4.6e7,\n"
    "                   \"fluxUnits\": \"...\", \"averageDepth\": 2.6, \"depthStdDev\": 0.21,\n"
    "                   \"depthUnits\": \"mm\" } ],\n"
    "    \"plots\": [ { \"roiLabel\": \"...\", \"declared\": 10, \"values\": 10 } ],\n"
    "    \"fits\": [ { \"roiLabel\": \"...\", \"declared\": 4, \"values\": 4 } ],\n"
    "    \"linearFit\": { \"a\": -2.6, \"b\": 19.9 } }\n");

// A number as the file writes it: 6 significant digits.
QString number(double value)
{
    return QString::number(value, 'g', 6);
}

double jsonNumber(double value)
{
    return number(value).toDouble();
}

// Loads the document, reporting what fails; the exit status, or nothing on success.
std::optional<int> load(const QString& path, CPLSpectralWrapper* wrapper)
{
    CPLXMLReader reader;
    const int status = reader.loadXMLFile(path);
    switch (status) {
    case PL_SUCCESS:
        break;
    case PL_MALFORMED_XML:
        return fail(ExitMalformed, QStringLiteral("%1:%2:%3")
                        .arg(path)
                        .arg(reader.getErrorLine())
                        .arg(reader.getErrorColumn()),
                    QLatin1String("malformed XML: ") + reader.getErrorMessage());
    default:
        return fail(exitStatusOf(status, Step::Read), path, statusReason(status));
    }
    if (wrapper->loadSpectralXML(reader) != PL_SUCCESS)
        return fail(ExitMalformed, path,
                    QStringLiteral("not a spectral-analysis document (its root element is not ")
                        + quoted(QString::fromLatin1(gsElementInfo[0].szElementName))
                        + QLatin1Char(')'));
    return std::nullopt;
}

// A count of values, with the count the file declares when that differs.
QString count(int values, int declared)
{
    const QString text = QString::number(values);
    return values == declared ? text
                              : text + QStringLiteral(" (the file declares %1)").arg(declared);
}

// The label column of `rows`, padded to the widest label.
template<typename Row> int labelWidth(const QList<Row>& rows, QString Row::*label)
{
    int width = 0;
    for (const Row& row : rows)
        width = std::max(width, (row.*label).size());
    return width;
}

// The number of plot or fit values, in all and per ROI.
template<typename Value>
void printCounts(QTextStream& out, const char* title, const QList<_tagSROIValues<Value>>& list)
{
    int total = 0;
    for (const auto& results : list)
        total += results.values.size();
    out << QLatin1String(title) << total << QLatin1Char('\n');
    const int width = labelWidth(list, &_tagSROIValues<Value>::strROILabel);
    for (const auto& results : list)
        out << QLatin1String("  ") << results.strROILabel.leftJustified(width)
            << QLatin1String("  ") << count(results.values.size(), results.nTotalValues)
            << QLatin1Char('\n');
}

void printSummary(QTextStream& out, const QString& path, const _tagSSpectralDocument& d)
{
    const _tagSSpectralAttributes& a = d.attributes;
    out << QLatin1String("Spectral analysis: ") << path << QLatin1Char('\n');
    const QPair<const char*, QString> attributes[] = {
        { "Date.Time", a.strDateTime },
        { "SequenceID", a.strSequenceID },
        { "No.Of.Clicks", QString::number(a.nNumberOfClicks) },
        { "Active.Image", a.strActiveImage },
        { "Tissue.Property", a.strTissueProperty },
        { "Source.Model", a.strSourceModel },
        { "Index.of.Refraction", number(double(a.fIndexOfRefraction)) },
    };
    for (const auto& attribute : attributes)
        out << QLatin1String("  ")
            << QString::fromLatin1(attribute.first).append(QLatin1Char(':')).leftJustified(21)
            << attribute.second << QLatin1Char('\n');

    out << QLatin1String("\nClicks: ") << count(d.clicks.size(), d.nTotalClicks)
        << QLatin1Char('\n');
    const int width = labelWidth(d.clicks, &_tagSClickInfo::strClickNumber);
    for (const _tagSClickInfo& c : d.clicks)
        out << QLatin1String("  ") << c.strClickNumber.leftJustified(width) << QLatin1String("  ")
            << c.strWavelength << QLatin1String("nm  filter ") << c.filter.nCentralWavelength
            << QLatin1String("nm, band width ") << number(double(c.filter.fBandWidth))
            << QLatin1String(", transmission ") << number(double(c.filter.fAvgTransmission))
            << QLatin1String("; ") << c.rois.size() << QLatin1String(" ROIs, ")
            << c.measurements.size() << QLatin1String(" measurements\n");

    out << QLatin1String("\nROI results: ") << d.results.size() << QLatin1Char('\n');
    const int roiWidth = labelWidth(d.results, &_tagSROISpectralResults::strROI);
    for (const _tagSROISpectralResults& r : d.results)
        out << QLatin1String("  ") << r.strROI.leftJustified(roiWidth)
            << QLatin1String("  total flux ") << number(r.dTotalFlux) << QLatin1String(" +/- ")
            << number(r.dFluxStdDev) << QLatin1Char(' ') << r.strFluxUnits
            << QLatin1String(", average depth ") << number(r.dAverageDepth)
            << QLatin1String(" +/- ") << number(r.dDepthStdDev) << QLatin1Char(' ')
            << r.strDepthUnits << QLatin1Char('\n');

    out << QLatin1Char('\n');
    printCounts(out, "Plot values: ", d.plots);
    printCounts(out, "Fit values: ", d.fits);
    out << QLatin1String("\nLinear fit: A ") << number(d.linearFit.dA) << QLatin1String(", B ")
        << number(d.linearFit.dB) << QLatin1Char('\n');
}

template<typename Value> QJsonArray countsJson(const QList<_tagSROIValues<Value>>& list)
{
    QJsonArray array;
    for (const auto& results : list)
        array.append(QJsonObject { { QStringLiteral("roiLabel"), results.strROILabel },
                                   { QStringLiteral("declared"), results.nTotalValues },
                                   { QStringLiteral("values"), results.values.size() } });
    return array;
}

QJsonObject summaryJson(const QString& path, const _tagSSpectralDocument& d)
{
    const _tagSSpectralAttributes& a = d.attributes;
    const QJsonObject attributes {
        { QStringLiteral("Date.Time"), a.strDateTime },
        { QStringLiteral("SequenceID"), a.strSequenceID },
        { QStringLiteral("No.Of.Clicks"), a.nNumberOfClicks },
        { QStringLiteral("Active.Image"), a.strActiveImage },
        { QStringLiteral("Tissue.Property"), a.strTissueProperty },
        { QStringLiteral("Source.Model"), a.strSourceModel },
        { QStringLiteral("Index.of.Refraction"), jsonNumber(double(a.fIndexOfRefraction)) },
    };
    QJsonArray clicks;
    for (const _tagSClickInfo& c : d.clicks) {
        const QJsonObject filter {
            { QStringLiteral("centralWavelength"), c.filter.nCentralWavelength },
            { QStringLiteral("bandWidth"), jsonNumber(double(c.filter.fBandWidth)) },
            { QStringLiteral("avgTransmission"), jsonNumber(double(c.filter.fAvgTransmission)) },
        };
        clicks.append(QJsonObject { { QStringLiteral("clickNumber"), c.strClickNumber },
                                    { QStringLiteral("wavelength"), c.strWavelength },
                                    { QStringLiteral("filter"), filter },
                                    { QStringLiteral("rois"), c.rois.size() },
                                    { QStringLiteral("measurements"), c.measurements.size() } });
    }
    QJsonArray results;
    for (const _tagSROISpectralResults& r : d.results)
        results.append(QJsonObject { { QStringLiteral("roi"), r.strROI },
                                     { QStringLiteral("totalFlux"), r.dTotalFlux },
                                     { QStringLiteral("fluxStdDev"), r.dFluxStdDev },
                                     { QStringLiteral("fluxUnits"), r.strFluxUnits },
                                     { QStringLiteral("averageDepth"), r.dAverageDepth },
                                     { QStringLiteral("depthStdDev"), r.dDepthStdDev },
                                     { QStringLiteral("depthUnits"), r.strDepthUnits } });
    return QJsonObject {
        { QStringLiteral("file"), path },
        { QStringLiteral("attributes"), attributes },
        { QStringLiteral("totalClicks"), d.nTotalClicks },
        { QStringLiteral("clicks"), clicks },
        { QStringLiteral("results"), results },
        { QStringLiteral("plots"), countsJson(d.plots) },
        { QStringLiteral("fits"), countsJson(d.fits) },
        { QStringLiteral("linearFit"),
          QJsonObject { { QStringLiteral("a"), d.linearFit.dA },
                        { QStringLiteral("b"), d.linearFit.dB } } },
    };
}

} // namespace

int runSpectral(const QStringList& arguments)
{
    CommandLine commandLine(QStringLiteral("spectral"),
                            QStringLiteral("Summarises the spectral-analysis results in FILE."));
    commandLine.addArgument(QStringLiteral("FILE"),
                            QStringLiteral("A spectral-analysis XML file (root element "
                                           "\"OV3.0.SpectralAnalysis\")."));
    commandLine.addOption(QStringLiteral("json"), QStringLiteral("Prints the summary as JSON."));
    commandLine.setNotes(NOTES);
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = commandLine.argument(0);
    CPLSpectralWrapper wrapper;
    if (const auto failed = load(path, &wrapper))
        return *failed;
    _tagSSpectralDocument document;
    if (wrapper.getSpectralDocument(&document) != PL_SUCCESS)
        return fail(ExitMalformed, path,
                    QStringLiteral("incomplete spectral-analysis document (it lacks its "
                                   "attributes, its click list or its linear fit)"));
    if (commandLine.isSet(QStringLiteral("json")))
        writeOutputBytes(
            QJsonDocument(summaryJson(path, document)).toJson(QJsonDocument::Indented));
    else
        printSummary(standardOutput(), path, document);
    return ExitSuccess;
}
