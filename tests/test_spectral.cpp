// CPLSpectralWrapper: the exact bytes of a document, number formats, the date-time text,
// saving that never loses the old file, reading every value back, the status codes of
// reading, and well-formedness checked by parsers that are not ours.

#include "PLSpectralWrapper.h"
#include "PLStatus.h"
#include "PLXMLReader.h"
#include "SpectralSample.h"
#include "TestUtil.h"

#include <QBuffer>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <cmath>
#include <csignal>
#include <cstdio>
#include <functional>
#include <limits>
#include <sys/resource.h>
#include <utility>

namespace {

const QString SAMPLE = L1(OVPARSER_SAMPLES "/spectral/SpectralAnalysis.xml");

_tagsROIProperties smallROI()
{
    _tagsROIProperties roi;
    roi.strROIName = L1("ROI 1");
    roi.strROIShape = L1("Circle");
    roi.dXc = 1234567;
    roi.dYc = 0.5;
    roi.nROIPixels = 42;
    roi.nContourXDelta = -3;
    return roi;
}

// One of each operation, with numbers that show their formats.
void writeSmallDocument(CPLSpectralWrapper& w)
{
    w.setDateTimeText(L1("10:00:00, Mon Jan 5 2026"));
    w.setSpectralAttributes(L1("SEQ-1"), 1, L1("c1"), L1("Muscle"), L1("Firefly"), 1.4f);
    w.setOpenClickInfo(1);
    w.setClickNumberInfo(L1("c1"), L1("560"));
    w.setClickNumberFilterProperties(560, 20.5f, 0.5f);
    w.setClickNumberROIProperties(L1("Tumor"), smallROI(), false);
    w.setROIMeasurementsProperties(L1("560nm"), 1e-7, 123.456789);
    w.setCloseClickNumberInfo();
    w.setCloseClickInfo();
    w.setSpectralAnalysisResults(L1("ROI 1"), 2.5e9, 1.5e8, L1("p/s"), 3.25, 0.125, L1("mm"));
    w.setOpenSpectralAnalysisPlotResults(L1("Tumor"), 1);
    w.setSpectralAnalysisPlotResults(0.75, 560);
    w.setCloseSpectralAnalysisPlotResults();
    w.setOpenSpectralAnalysisFitResults(L1("Tumor"), 1);
    w.setSpectralAnalysisFitResults(1, 2, 3, 4, 5);
    w.setCloseSpectralAnalysisFitResults();
    w.setLinearFitResults(-2.5, 19.75);
}

const QByteArray SMALL_DOCUMENT
    = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<!DOCTYPE OV3.0.SpectralAnalysis><OV3.0.SpectralAnalysis>\n"
      "<OV3.0.SpectralAnalysis.Attributes Active.Image=\"c1\" Date.Time=\"10:00:00, Mon Jan 5 "
      "2026\" Index.of.Refraction=\"1.4\" No.Of.Clicks=\"1\" SequenceID=\"SEQ-1\" "
      "Source.Model=\"Firefly\" Tissue.Property=\"Muscle\"/>"
      "<OV3.0.SpectralAnalysis.ClickInfo Total.Clicks=\"1\">"
      "<OV3.0.SpectralAnalysis.ClickInfo.Click Click.Number=\"c1\" Image.Wavelength=\"560nm\">"
      "<OV3.0.SpectralAnalysis.Click.Filter.Properties Avg.Transmission=\"0.5\" "
      "Band.Width=\"20.5\" Central.Wavelength=\"560nm\"/>"
      "<OV3.0.SpectralAnalysis.Click.ROI ROI=\"ROI 1\" ROI.Label=\"ROI 1\">"
      "<OV3.0.SpectralAnalysis.Click.ROI.Properties Angle=\"0\" Area=\"0\" Bkg.Association=\"\" "
      "Bkg.ROI=\"\" CmPerPixel=\"0\" Contour.Directions=\"\" Contour.PeakX=\"0\" "
      "Contour.PeakY=\"0\" Contour.StartX=\"0\" Contour.StartY=\"0\" Contour.XDelta=\"-3\" "
      "Contour.YDelta=\"0\" Fractional.Peak=\"0\" Height=\"0\" Lock.Position=\"\" "
      "Lock.Size=\"\" ROI.Pixels=\"42\" ROI.Shape=\"Circle\" ROI.Type=\"\" Width=\"0\" "
      "Xc=\"1.23457e+06\" Yc=\"0.5\"/>"
      "</OV3.0.SpectralAnalysis.Click.ROI>"
      "<OV3.0.SpectralAnalysis.Click.ROI><OV3.0.SpectralAnalysis.Click.ROI.Measurements "
      "Average.Radiance=\"123.457\" Filter.Label=\"560nm\" Total.Flux=\"1e-07\"/>"
      "</OV3.0.SpectralAnalysis.Click.ROI>"
      "</OV3.0.SpectralAnalysis.ClickInfo.Click></OV3.0.SpectralAnalysis.ClickInfo>"
      "<OV3.0.SpectralAnalysis.Results ROI=\"ROI 1\"><OV3.0.SpectralAnalysis.Results.Flux "
      "Flux.Std.Dev=\"1.5e+08\" Flux.Units=\"p/s\" Total.Flux=\"2.5e+09\"/>"
      "<OV3.0.SpectralAnalysis.Results.Depth Average.Depth=\"3.25\" Depth.Std.Dev=\"0.125\" "
      "Depth.Units=\"mm\"/></OV3.0.SpectralAnalysis.Results>"
      "<OV3.0.SpectralAnalysis.Plot.Results ROI.Label=\"Tumor\" Total.Plot.Values=\"1\">"
      "<OV3.0.SpectralAnalysis.Plot.Values Intensity=\"0.75\" Wave.Length=\"560\"/>"
      "</OV3.0.SpectralAnalysis.Plot.Results>"
      "<OV3.0.SpectralAnalysis.Fit.Results ROI.Label=\"Tumor\" Total.Fit.Values=\"1\">"
      "<OV3.0.SpectralAnalysis.Fit.Values Attenuation=\"2\" Fit.Value=\"3\" "
      "Horizontal.Error=\"4\" Intensity=\"1\" Vertical.Error=\"5\"/>"
      "</OV3.0.SpectralAnalysis.Fit.Results>"
      "<OV3.0.SpectralAnalysis.Linear.Fit.Values Linear.fit.value.A=\"-2.5\" "
      "Linear.fit.value.B=\"19.75\"/></OV3.0.SpectralAnalysis>";

// A document whose texts hold every escaped character and non-ASCII text.
_tagSSpectralDocument escapedDocument()
{
    const QString awkward
        = QString::fromUtf8("a&b <c> \"d\" 'e' \xc3\xa9\xe2\x82\xac\xe6\x97\xa5 &amp;");
    _tagSSpectralDocument d;
    d.attributes = { awkward, awkward, 2, awkward, L1("tab\tline\nend"), awkward, 1.33f };
    _tagSClickInfo click;
    click.strClickNumber = awkward;
    click.strWavelength = L1("<5&6>");
    _tagsROIProperties roi = smallROI();
    roi.strROIName = awkward;
    click.rois.append({ awkward, roi });
    d.clicks.append(click);
    d.results.append({ awkward, 1, 2, awkward, 3, 4, QString::fromUtf8("\xc2\xb5m") });
    d.fits.append({ awkward, 7, { { 1, 2, 3, 4, 5 } } });
    return d;
}

QByteArray writtenBytes(const _tagSSpectralDocument& document)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    CPLSpectralWrapper wrapper;
    EXPECT_EQ(wrapper.createSpectralXMLDocument(&buffer), PL_SUCCESS);
    EXPECT_EQ(wrapper.writeSpectralDocument(document), PL_SUCCESS);
    return buffer.data();
}

_tagSSpectralDocument readBack(const QByteArray& bytes)
{
    CPLSpectralWrapper reader;
    _tagSSpectralDocument document;
    EXPECT_EQ(reader.loadSpectralXMLData(bytes), PL_SUCCESS);
    EXPECT_EQ(reader.getSpectralDocument(&document), PL_SUCCESS);
    return document;
}

class SpectralFile : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(m_dir.isValid()); }
    QString path(const char* name) const { return m_dir.filePath(L1(name)); }
    QStringList files() const { return QDir(m_dir.path()).entryList(QDir::Files | QDir::Hidden); }
    QTemporaryDir m_dir;
};

TEST(Spectral, DateTimeIsTheCurrentTimeUnlessFixed)
{
    CPLSpectralWrapper wrapper;
    wrapper.setDateTimeText(L1("fixed"));
    wrapper.setDateAndTime();
    EXPECT_EQ(wrapper.getDateTimeText(), L1("fixed"));
    // An empty text fixes nothing: the current time, in this form.
    wrapper.setDateTimeText(QString());
    const QDateTime before = QDateTime::currentDateTime();
    wrapper.setDateAndTime();
    const QString text = wrapper.getDateTimeText();
    const QString form = L1("hh:mm:ss, ddd MMM d yyyy");
    const QDateTime taken = QLocale::c().toDateTime(text, form);
    EXPECT_EQ(QLocale::c().toString(taken, form), text);
    EXPECT_LE(std::abs(before.secsTo(taken)), 2) << text.toStdString();
}

TEST(Spectral, WritesTheExactBytesOrReportsAShortWrite)
{
    CPLSpectralWrapper wrapper;
    // A device that takes all of the document, or only part of it.
    for (const qint64 capacity : { SMALL_DOCUMENT.size(), SMALL_DOCUMENT.size() - 1, 100, 0 }) {
        LimitedDevice device(capacity);
        ASSERT_EQ(wrapper.createSpectralXMLDocument(&device), PL_SUCCESS);
        writeSmallDocument(wrapper);
        const bool whole = capacity == SMALL_DOCUMENT.size();
        EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), whole ? PL_SUCCESS : PL_SHORT_WRITE);
        EXPECT_EQ(device.written, SMALL_DOCUMENT.left(int(capacity))) << capacity;
    }
    // A document is closed once.
    EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_NOTHING_TO_WORK_ON);
}

TEST_F(SpectralFile, AnUnfinishedOrShortDocumentLeavesTheOldFile)
{
    writeBytes(path("s.xml"), "old");
    {
        CPLSpectralWrapper wrapper;
        ASSERT_EQ(wrapper.createSpectralXMLFile(path("s.xml")), PL_SUCCESS);
        writeSmallDocument(wrapper);
        // A second document discards the first; the wrapper goes before closing it.
        ASSERT_EQ(wrapper.createSpectralXMLFile(path("s.xml")), PL_SUCCESS);
        writeSmallDocument(wrapper);
    }
    EXPECT_EQ(readBytes(path("s.xml")), "old");

    // A file size limit below the document's size: the write fails instead of ending the test.
    {
        const FileSizeLimit limit(500);
        CPLSpectralWrapper wrapper;
        EXPECT_EQ(wrapper.createSpectralXMLFile(path("s.xml")), PL_SUCCESS);
        writeSmallDocument(wrapper);
        EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_SHORT_WRITE);
    }
    EXPECT_EQ(readBytes(path("s.xml")), "old");
    EXPECT_EQ(files(), QStringList { L1("s.xml") });
}

TEST_F(SpectralFile, NothingIsWrittenWithoutAFile)
{
    CPLSpectralWrapper wrapper;
    EXPECT_EQ(wrapper.createSpectralXMLFile(path("no/such/folder/s.xml")), PL_FILE_OPEN_FAILED);
    writeSmallDocument(wrapper);
    EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(wrapper.createSpectralXMLDocument(nullptr), PL_NULL_ARGUMENT);
    QBuffer readOnly;
    readOnly.open(QIODevice::ReadOnly);
    EXPECT_EQ(wrapper.createSpectralXMLDocument(&readOnly), PL_INVALID_ARGUMENT);
    EXPECT_TRUE(files().isEmpty());
}

// Every value read back is written again as it was: nothing is lost or changed.
TEST(Spectral, ReadsBackEveryValueWritten)
{
    for (const auto& document : { spectralSampleDocument(), _tagSSpectralDocument() }) {
        const QByteArray bytes = writtenBytes(document);
        EXPECT_EQ(writtenBytes(readBack(bytes)), bytes);
    }
    // Escaped and non-ASCII text, tabs and line breaks included.
    const _tagSSpectralDocument escaped = escapedDocument();
    const _tagSSpectralDocument read = readBack(writtenBytes(escaped));
    EXPECT_EQ(read.attributes.strTissueProperty, L1("tab\tline\nend"));
    EXPECT_EQ(writtenBytes(read), writtenBytes(escaped));
}

// Tabs and line breaks in an attribute are written as character references, so that a reader
// does not turn them into blanks; not-a-number and the infinities in XML Schema's forms.
TEST(Spectral, TabsLineBreaksNaNAndInfinitiesComeBack)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    _tagSSpectralDocument document;
    document.attributes.strSequenceID = L1("a\tb\nc\rd\r\ne");
    document.attributes.fIndexOfRefraction = std::numeric_limits<float>::quiet_NaN();
    document.linearFit = { inf, -inf };
    document.plots.append({ L1("P"), 1, { { nan, -inf } } });
    const QByteArray bytes = writtenBytes(document);
    EXPECT_TRUE(bytes.contains("SequenceID=\"a&#9;b&#10;c&#13;d&#13;&#10;e\"")) << bytes.data();
    EXPECT_TRUE(bytes.contains("Index.of.Refraction=\"NaN\""));
    EXPECT_TRUE(bytes.contains("Linear.fit.value.A=\"INF\" Linear.fit.value.B=\"-INF\""));
    EXPECT_TRUE(bytes.contains("Intensity=\"NaN\" Wave.Length=\"-INF\""));

    const _tagSSpectralDocument read = readBack(bytes);
    EXPECT_EQ(read.attributes.strSequenceID, document.attributes.strSequenceID);
    EXPECT_TRUE(std::isnan(read.attributes.fIndexOfRefraction));
    EXPECT_EQ(read.linearFit.dA, inf);
    EXPECT_EQ(read.linearFit.dB, -inf);
    ASSERT_EQ(read.plots.size(), 1);
    ASSERT_EQ(read.plots.first().values.size(), 1);
    EXPECT_TRUE(std::isnan(read.plots.first().values.first().dIntensity));
    EXPECT_EQ(read.plots.first().values.first().dWaveLength, -inf);
}

// Text that XML cannot carry, even as a character reference, is refused by the operation that
// is given it; the document is spoiled and its file keeps its old content.
TEST_F(SpectralFile, TextXMLCannotCarryIsRefusedAndTheOldFileKept)
{
    writeBytes(path("s.xml"), SMALL_DOCUMENT);
    const QString nul(QChar(0));
    const QString bad[]
        = { L1("a\x01"), QString(QChar(0xfffe)), QString(QChar(0xffff)),          nul,
            L1("\x1f"),  QString(QChar(0xd800)), QString(QChar(0xdc00)) + L1("x") };
    for (const QString& text : bad) {
        CPLSpectralWrapper wrapper;
        ASSERT_EQ(wrapper.createSpectralXMLFile(path("s.xml")), PL_SUCCESS);
        EXPECT_EQ(wrapper.setSpectralAttributes(L1("S"), 1, L1("c1"), text, L1("F"), 1.4f),
                  PL_INVALID_ARGUMENT);
        // Later operations write nothing either, and the close saves nothing.
        EXPECT_EQ(wrapper.setOpenClickInfo(1), PL_INVALID_ARGUMENT);
        EXPECT_EQ(wrapper.setLinearFitResults(1, 2), PL_INVALID_ARGUMENT);
        EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_INVALID_ARGUMENT);
        EXPECT_EQ(readBytes(path("s.xml")), SMALL_DOCUMENT);
        EXPECT_EQ(files(), QStringList { L1("s.xml") });
    }
    // Each operation that takes text refuses it, the date-time text too.
    const std::function<int(CPLSpectralWrapper&, const QString&)> operations[] = {
        [](CPLSpectralWrapper& w, const QString& t) {
            w.setDateTimeText(t);
            return w.setSpectralAttributes(L1("S"), 1, L1("c"), L1("T"), L1("F"), 1);
        },
        [](CPLSpectralWrapper& w, const QString& t) { return w.setClickNumberInfo(L1("c"), t); },
        [](CPLSpectralWrapper& w, const QString& t) {
            _tagsROIProperties roi = smallROI();
            roi.strContourDirections = t;
            return w.setClickNumberROIProperties(L1("L"), roi, true);
        },
        [](CPLSpectralWrapper& w, const QString& t) {
            return w.setROIMeasurementsProperties(t, 1, 2);
        },
        [](CPLSpectralWrapper& w, const QString& t) {
            return w.setSpectralAnalysisResults(L1("R"), 1, 2, L1("p/s"), 3, 4, t);
        },
        [](CPLSpectralWrapper& w, const QString& t) {
            return w.setOpenSpectralAnalysisPlotResults(t, 1);
        },
        [](CPLSpectralWrapper& w, const QString& t) {
            return w.setOpenSpectralAnalysisFitResults(t, 1);
        },
    };
    for (const auto& operation : operations) {
        QBuffer buffer;
        buffer.open(QIODevice::WriteOnly);
        CPLSpectralWrapper wrapper;
        ASSERT_EQ(wrapper.createSpectralXMLDocument(&buffer), PL_SUCCESS);
        const QByteArray start = buffer.data();
        EXPECT_EQ(operation(wrapper, L1("x\x02")), PL_INVALID_ARGUMENT);
        EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_INVALID_ARGUMENT);
        EXPECT_EQ(buffer.data(), start); // the refused element is not written
    }
    // A document written whole through writeSpectralDocument() gives the close's status.
    _tagSSpectralDocument document = escapedDocument();
    document.results.first().strFluxUnits = nul;
    CPLSpectralWrapper wrapper;
    ASSERT_EQ(wrapper.createSpectralXMLFile(path("s.xml")), PL_SUCCESS);
    EXPECT_EQ(wrapper.writeSpectralDocument(document), PL_INVALID_ARGUMENT);
    EXPECT_EQ(readBytes(path("s.xml")), SMALL_DOCUMENT);
    // Without a document, an operation says so.
    EXPECT_EQ(wrapper.setOpenClickInfo(1), PL_NOTHING_TO_WORK_ON);
}

TEST_F(SpectralFile, ReadingReportsWhatIsWrong)
{
    CPLSpectralWrapper wrapper;
    _tagSSpectralAttributes attributes;
    EXPECT_EQ(wrapper.getSpectralAttributes(&attributes), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(wrapper.loadSpectralXMLFile(path("missing.xml")), PL_FILE_OPEN_FAILED);
    EXPECT_EQ(wrapper.loadSpectralXMLData(SMALL_DOCUMENT.left(300)), PL_MALFORMED_XML);
    EXPECT_EQ(wrapper.loadSpectralXMLData("<a/>"), PL_KEY_NOT_FOUND);
    EXPECT_EQ(wrapper.getSpectralAttributes(&attributes), PL_NOTHING_TO_WORK_ON);

    // A root alone: the lists are empty, the single elements missing.
    ASSERT_EQ(wrapper.loadSpectralXMLData("<OV3.0.SpectralAnalysis/>"), PL_SUCCESS);
    QList<_tagSClickInfo> clicks;
    QList<_tagSPlotResults> plots { _tagSPlotResults() };
    _tagSLinearFit linearFit;
    _tagSSpectralDocument document;
    EXPECT_EQ(wrapper.getSpectralAttributes(&attributes), PL_KEY_NOT_FOUND);
    EXPECT_EQ(wrapper.getClickInfo(&clicks), PL_KEY_NOT_FOUND);
    EXPECT_EQ(wrapper.getLinearFitResults(&linearFit), PL_KEY_NOT_FOUND);
    EXPECT_EQ(wrapper.getSpectralDocument(&document), PL_KEY_NOT_FOUND);
    EXPECT_EQ(wrapper.getSpectralAnalysisPlotResults(&plots), PL_SUCCESS);
    EXPECT_TRUE(plots.isEmpty());
    EXPECT_EQ(wrapper.getSpectralAnalysisPlotResults(nullptr), PL_NULL_ARGUMENT);

    ASSERT_EQ(wrapper.loadSpectralXMLData(SMALL_DOCUMENT), PL_SUCCESS);
    int totalClicks = 0;
    EXPECT_EQ(wrapper.getClickInfo(&clicks, &totalClicks), PL_SUCCESS);
    EXPECT_EQ(totalClicks, 1);
    EXPECT_EQ(clicks.size(), 1);
    EXPECT_EQ(wrapper.getLinearFitResults(&linearFit), PL_SUCCESS);
    EXPECT_DOUBLE_EQ(linearFit.dA, -2.5);
}

TEST(XMLReader, TellsAndLogsWhereTheTextIsMalformed)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(L1("bad.xml"));
    writeBytes(file, "<a>\n  <b></a>\n");
    static QStringList messages;
    const auto old = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& m) { messages.append(m); });
    CPLXMLReader reader;
    const int status = reader.loadXMLFile(file);
    qInstallMessageHandler(old);
    EXPECT_EQ(status, PL_MALFORMED_XML);
    EXPECT_EQ(reader.getErrorLine(), 2);
    EXPECT_GT(reader.getErrorColumn(), 0);
    EXPECT_FALSE(reader.getErrorMessage().isEmpty());
    EXPECT_TRUE(reader.getRootElement().isNull());
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].startsWith(
        QStringLiteral("%1:2:%2: malformed XML: ").arg(file).arg(reader.getErrorColumn())))
        << messages[0].toStdString();
    // Text that XML does not allow, which a lax parser would take.
    for (const char* text : { "<a b=\"\x01\"/>", "<a>&#1;</a>", "<a>\xff</a>" })
        EXPECT_EQ(reader.loadXMLData(text), PL_MALFORMED_XML) << text;

    ASSERT_EQ(reader.loadXMLData("<a><c/><c i=\"2\"/></a>"), PL_SUCCESS);
    EXPECT_EQ(reader.getErrorLine(), 0);
    const QDomElement root = reader.getRootElement();
    QDomElement child;
    EXPECT_EQ(CPLXMLReader::getChildElement(root, L1("c"), &child), PL_SUCCESS);
    EXPECT_EQ(child, root.firstChildElement());
    EXPECT_EQ(CPLXMLReader::getChildElement(root, L1("d"), &child), PL_KEY_NOT_FOUND);
    EXPECT_EQ(CPLXMLReader::getChildElement(root, L1("c"), nullptr), PL_NULL_ARGUMENT);
}

// `depth` elements, each inside the one before, with `separator` after every tag.
QByteArray nested(int depth, const QByteArray& separator = QByteArray())
{
    return QByteArray("<e>" + separator).repeated(depth)
        + QByteArray("</e>" + separator).repeated(depth);
}

// The category and text of every message logged while it lives.
class LoggedMessages
{
public:
    LoggedMessages() { m_previous = qInstallMessageHandler(keep); }
    ~LoggedMessages() { qInstallMessageHandler(m_previous); }
    QStringList take() { return std::exchange(s_messages, {}); }

private:
    static void keep(QtMsgType, const QMessageLogContext& context, const QString& message)
    {
        s_messages.append(QString::fromLatin1(context.category) + L1(": ") + message);
    }
    static inline QStringList s_messages;
    QtMessageHandler m_previous;
};

TEST(XMLReader, RefusesNestingDeeperThanTheLimit)
{
    static_assert(CPLXMLReader::MAX_ELEMENT_DEPTH == 256);
    CPLXMLReader reader;
    LoggedMessages log;
    ASSERT_EQ(reader.loadXMLData(nested(256, "\n")), PL_SUCCESS);
    EXPECT_TRUE(log.take().isEmpty());
    QDomElement deepest = reader.getRootElement();
    for (int level = 1; level < 256; ++level)
        deepest = deepest.firstChildElement();
    EXPECT_EQ(deepest.tagName(), L1("e"));
    EXPECT_TRUE(deepest.firstChildElement().isNull());

    // One level more: refused where the 257th start tag ends, line 257, column 3.
    EXPECT_EQ(reader.loadXMLData(nested(257, "\n")), PL_MALFORMED_XML);
    EXPECT_EQ(reader.getErrorLine(), 257);
    EXPECT_EQ(reader.getErrorColumn(), 3);
    EXPECT_EQ(reader.getErrorMessage(), L1("elements nested deeper than 256 levels"));
    EXPECT_TRUE(reader.getRootElement().isNull());
    EXPECT_EQ(log.take(),
              L1List({ "ovparser.xml: XML text:257:3: malformed XML: elements nested deeper "
                       "than 256 levels" }));
    // Text malformed before that depth is reached keeps the parser's own report.
    EXPECT_EQ(reader.loadXMLData("<a></b>" + nested(300)), PL_MALFORMED_XML);
    EXPECT_EQ(reader.getErrorLine(), 1);
    EXPECT_NE(reader.getErrorMessage(), L1("elements nested deeper than 256 levels"));
    EXPECT_EQ(log.take().size(), 1);
}

// The check stops at the first element too deep: these are refused in milliseconds, where the
// DOM parse alone, whose time grows with the square of the depth, would need minutes.
TEST(XMLReader, RefusesVeryDeepNestingFast)
{
    CPLXMLReader reader;
    LoggedMessages log;
    for (const int depth : { 200000, 400000 }) {
        const QByteArray text = nested(depth);
        QElapsedTimer clock;
        clock.start();
        EXPECT_EQ(reader.loadXMLData(text), PL_MALFORMED_XML);
        const qint64 elapsed = clock.elapsed();
        EXPECT_LT(elapsed, 2000) << depth << " levels";
        EXPECT_EQ(reader.getErrorColumn(), 3 * 257) << depth << " levels";
        std::printf("%d levels (%lld bytes) refused in %lld ms\n", depth,
                    static_cast<long long>(text.size()), static_cast<long long>(elapsed));
    }
    EXPECT_EQ(log.take().size(), 2);
}

// Every kind of document the writer produces, checked by parsers that are not ours:
// QXmlStreamReader directly, and xmllint when it is installed.
TEST_F(SpectralFile, ForeignParsersFindTheDocumentsWellFormed)
{
    const struct
    {
        const char* name;
        QByteArray bytes;
        bool wellFormed;
    } documents[] = {
        { "small", SMALL_DOCUMENT, true },
        { "sample", writtenBytes(spectralSampleDocument()), true },
        { "escaped", writtenBytes(escapedDocument()), true },
        { "empty", writtenBytes(_tagSSpectralDocument()), true },
        // The parsers do find what is malformed.
        { "bad", "<a x=\"<\"/>", false },
    };
    for (const auto& document : documents) {
        QXmlStreamReader xml(document.bytes);
        while (!xml.atEnd())
            xml.readNext();
        EXPECT_EQ(!xml.hasError(), document.wellFormed)
            << document.name << ": " << xml.errorString().toStdString();
    }
    const QString xmllint = QStandardPaths::findExecutable(L1("xmllint"));
    if (xmllint.isEmpty())
        GTEST_SKIP() << "xmllint is not installed (scripts/install-deps.sh xml installs it)";
    for (const auto& document : documents) {
        writeBytes(path(document.name), document.bytes);
        QProcess process;
        process.start(xmllint, { L1("--noout"), path(document.name) });
        ASSERT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitCode() == 0, document.wellFormed)
            << document.name << ": " << process.readAllStandardError().toStdString();
    }
}

TEST_F(SpectralFile, TheSampleIsWhatTheWriterWritesNow)
{
    ASSERT_EQ(writeSpectralSample(path("s.xml")), PL_SUCCESS);
    const QByteArray sample = readBytes(SAMPLE);
    ASSERT_FALSE(sample.isEmpty()) << SAMPLE.toStdString();
    EXPECT_EQ(readBytes(path("s.xml")), sample)
        << "regenerate the samples with build/Tools/ovtool/make_samples samples: "
        << SAMPLE.toStdString();
}

} // namespace
