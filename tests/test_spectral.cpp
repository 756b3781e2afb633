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
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QXmlStreamReader>

#include <gtest/gtest.h>

#include <csignal>
#include <sys/resource.h>

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
    d.attributes = { awkward, awkward, 2, L1("<img>"), L1("tab\tline\nend"), L1("'q'"), 1.33f };
    _tagSClickInfo click;
    click.strClickNumber = awkward;
    click.strWavelength = L1("<5&6>");
    _tagsROIProperties roi = smallROI();
    roi.strROIName = awkward;
    roi.strBkgAssociation = awkward;
    click.rois.append({ awkward, roi });
    click.measurements.append({ awkward, 1, 2 });
    d.clicks.append(click);
    d.results.append({ awkward, 1, 2, awkward, 3, 4, QString::fromUtf8("\xc2\xb5m") });
    d.plots.append({ awkward, 0, {} });
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

TEST_F(SpectralFile, WritesTheExactBytes)
{
    CPLSpectralWrapper wrapper;
    ASSERT_EQ(wrapper.createSpectralXMLFile(path("s.xml")), PL_SUCCESS);
    writeSmallDocument(wrapper);
    EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_SUCCESS);
    EXPECT_EQ(readBytes(path("s.xml")), SMALL_DOCUMENT);
    EXPECT_EQ(wrapper.getDateTimeText(), L1("10:00:00, Mon Jan 5 2026"));
    // A document is closed once.
    EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_NOTHING_TO_WORK_ON);
}

TEST(Spectral, DateTimeIsTheCurrentTimeUnlessFixed)
{
    CPLSpectralWrapper wrapper;
    const QDateTime before = QDateTime::currentDateTime();
    wrapper.setDateAndTime();
    const QString text = wrapper.getDateTimeText();
    const QRegularExpression form(
        L1("^(\\d\\d:\\d\\d:\\d\\d), ([A-Z][a-z]{2} [A-Z][a-z]{2} \\d{1,2} \\d{4})$"));
    const QRegularExpressionMatch match = form.match(text);
    ASSERT_TRUE(match.hasMatch()) << text.toStdString();
    const QDateTime taken(QLocale::c().toDate(match.captured(2), L1("ddd MMM d yyyy")),
                          QTime::fromString(match.captured(1), L1("hh:mm:ss")));
    EXPECT_LE(std::abs(before.secsTo(taken)), 2) << text.toStdString();

    wrapper.setDateTimeText(L1("fixed"));
    wrapper.setDateAndTime();
    EXPECT_EQ(wrapper.getDateTimeText(), L1("fixed"));
    wrapper.setDateTimeText(QString());
    wrapper.setDateAndTime();
    EXPECT_TRUE(form.match(wrapper.getDateTimeText()).hasMatch());
}

TEST_F(SpectralFile, AnUnfinishedDocumentLeavesTheOldFile)
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
    EXPECT_EQ(files(), QStringList { L1("s.xml") });
    {
        CPLSpectralWrapper wrapper;
        ASSERT_EQ(wrapper.createSpectralXMLFile(path("new.xml")), PL_SUCCESS);
        writeSmallDocument(wrapper);
    }
    EXPECT_FALSE(QFile::exists(path("new.xml")));
}

TEST_F(SpectralFile, AShortWriteIsReportedAndLeavesTheOldFile)
{
    writeBytes(path("s.xml"), "old");
    // A file size limit below the document's size: the write fails instead of ending the test.
    const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    rlimit oldLimit {};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &oldLimit), 0);
    rlimit limit = oldLimit;
    limit.rlim_cur = 500;
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    CPLSpectralWrapper wrapper;
    const int created = wrapper.createSpectralXMLFile(path("s.xml"));
    writeSmallDocument(wrapper);
    const int closed = wrapper.setCloseSpectralAnalysis();
    setrlimit(RLIMIT_FSIZE, &oldLimit);
    std::signal(SIGXFSZ, oldHandler);

    EXPECT_EQ(created, PL_SUCCESS);
    EXPECT_EQ(closed, PL_SHORT_WRITE);
    EXPECT_EQ(readBytes(path("s.xml")), "old");
    EXPECT_EQ(files(), QStringList { L1("s.xml") });

    // A device that takes only part of the document.
    for (const qint64 capacity : { 0, 100, SMALL_DOCUMENT.size() - 1 }) {
        LimitedDevice device(capacity);
        ASSERT_EQ(wrapper.createSpectralXMLDocument(&device), PL_SUCCESS);
        writeSmallDocument(wrapper);
        EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_SHORT_WRITE) << capacity;
    }
    LimitedDevice exact(SMALL_DOCUMENT.size());
    ASSERT_EQ(wrapper.createSpectralXMLDocument(&exact), PL_SUCCESS);
    writeSmallDocument(wrapper);
    EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_SUCCESS);
    EXPECT_EQ(exact.written, SMALL_DOCUMENT);
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

TEST(Spectral, ReadsBackEveryValueWritten)
{
    const _tagSSpectralDocument sample = spectralSampleDocument();
    const QByteArray bytes = writtenBytes(sample);
    const _tagSSpectralDocument read = readBack(bytes);
    // Every value read back is written again as it was: nothing is lost or changed.
    EXPECT_EQ(writtenBytes(read), bytes);

    EXPECT_EQ(read.attributes.strDateTime, spectralSampleDateTime());
    EXPECT_EQ(read.attributes.nNumberOfClicks, 4);
    EXPECT_FLOAT_EQ(read.attributes.fIndexOfRefraction, 1.4f);
    EXPECT_EQ(read.nTotalClicks, 4);
    ASSERT_EQ(read.clicks.size(), 4);
    const _tagSClickInfo& last = read.clicks.last();
    EXPECT_EQ(last.strClickNumber, L1("KL20261104142207_004"));
    EXPECT_EQ(last.strWavelength, L1("620"));
    EXPECT_EQ(last.filter.nCentralWavelength, 620);
    ASSERT_EQ(last.rois.size(), 2);
    EXPECT_EQ(last.rois[1].strROILabel, L1("Right flank"));
    EXPECT_EQ(last.rois[1].properties.strROIName, L1("ROI 2"));
    EXPECT_EQ(last.rois[1].properties.strContourDirections, L1("NESW"));
    EXPECT_EQ(last.rois[1].properties.nContourYDelta, -1);
    EXPECT_DOUBLE_EQ(last.rois[1].properties.dContourPeakX, 503.4);
    ASSERT_EQ(last.measurements.size(), 2);
    // 6 significant digits.
    EXPECT_DOUBLE_EQ(
        last.measurements[0].dTotalFlux,
        QString::number(sample.clicks.last().measurements[0].dTotalFlux, 'g', 6).toDouble());
    ASSERT_EQ(read.results.size(), 2);
    EXPECT_DOUBLE_EQ(read.results[1].dTotalFlux, 1.16e9);
    EXPECT_EQ(read.results[1].strDepthUnits, L1("mm"));
    ASSERT_EQ(read.plots.size(), 2);
    EXPECT_EQ(read.plots[0].values.size(), 10);
    EXPECT_DOUBLE_EQ(read.plots[0].values[9].dWaveLength, 620);
    ASSERT_EQ(read.fits.size(), 2);
    EXPECT_EQ(read.fits[1].nTotalValues, 4);
    EXPECT_DOUBLE_EQ(read.fits[1].values[3].dVerticalError, 0.035);
    EXPECT_DOUBLE_EQ(read.linearFit.dB, 19.8561);
}

TEST(Spectral, ReadsBackEscapedAndNonAsciiText)
{
    const _tagSSpectralDocument written = escapedDocument();
    const _tagSSpectralDocument read = readBack(writtenBytes(written));
    EXPECT_EQ(read.attributes.strDateTime, written.attributes.strDateTime);
    EXPECT_EQ(read.attributes.strActiveImage, L1("<img>"));
    EXPECT_EQ(read.attributes.strSourceModel, L1("'q'"));
    // XML reads tabs and line breaks in an attribute as blanks.
    EXPECT_EQ(read.attributes.strTissueProperty, L1("tab line end"));
    ASSERT_EQ(read.clicks.size(), 1);
    EXPECT_EQ(read.clicks[0].strWavelength, L1("<5&6>"));
    ASSERT_EQ(read.clicks[0].rois.size(), 1);
    EXPECT_EQ(read.clicks[0].rois[0].properties.strBkgAssociation, written.attributes.strDateTime);
    EXPECT_EQ(read.results.value(0).strDepthUnits, QString::fromUtf8("\xc2\xb5m"));
    // A count is read as written, whatever the values held.
    EXPECT_EQ(read.fits.value(0).nTotalValues, 7);
    EXPECT_EQ(read.fits.value(0).values.size(), 1);
}

TEST_F(SpectralFile, ReadingReportsWhatIsWrong)
{
    writeBytes(path("bad.xml"), "<?xml version=\"1.0\"?>\n<a>\n  <b></a>\n");
    writeBytes(path("other.xml"), "<a/>");
    CPLSpectralWrapper wrapper;
    _tagSSpectralAttributes attributes;
    EXPECT_EQ(wrapper.getSpectralAttributes(&attributes), PL_NOTHING_TO_WORK_ON);
    EXPECT_EQ(wrapper.loadSpectralXMLFile(path("missing.xml")), PL_FILE_OPEN_FAILED);
    EXPECT_EQ(wrapper.loadSpectralXMLFile(path("bad.xml")), PL_MALFORMED_XML);
    EXPECT_EQ(wrapper.loadSpectralXMLData(SMALL_DOCUMENT.left(300)), PL_MALFORMED_XML);
    EXPECT_EQ(wrapper.loadSpectralXMLFile(path("other.xml")), PL_KEY_NOT_FOUND);
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
    ASSERT_EQ(clicks.size(), 1);
    // Without a label of its own the ROI's name was written as its label.
    EXPECT_EQ(clicks[0].rois.value(0).strROILabel, L1("ROI 1"));
    EXPECT_EQ(wrapper.getLinearFitResults(&linearFit), PL_SUCCESS);
    EXPECT_DOUBLE_EQ(linearFit.dA, -2.5);
}

TEST(XMLReader, TellsWhereTheTextIsMalformed)
{
    CPLXMLReader reader;
    EXPECT_EQ(reader.loadXMLData("<a>\n  <b></a>\n"), PL_MALFORMED_XML);
    EXPECT_EQ(reader.getErrorLine(), 2);
    EXPECT_GT(reader.getErrorColumn(), 0);
    EXPECT_FALSE(reader.getErrorMessage().isEmpty());
    EXPECT_TRUE(reader.getRootElement().isNull());
    // Text that XML does not allow, which a lax parser would take.
    for (const char* text : { "<a b=\"\x01\"/>", "<a>&#1;</a>", "<a>\xff</a>" })
        EXPECT_EQ(reader.loadXMLData(text), PL_MALFORMED_XML) << text;

    ASSERT_EQ(reader.loadXMLData("<a><b i=\"1\"/><c/><b i=\"2\"/></a>"), PL_SUCCESS);
    EXPECT_EQ(reader.getErrorLine(), 0);
    const QList<QDomElement> bs = CPLXMLReader::getChildElements(reader.getRootElement(), L1("b"));
    ASSERT_EQ(bs.size(), 2);
    EXPECT_EQ(bs[1].attribute(L1("i")), L1("2"));
    QDomElement child;
    EXPECT_EQ(CPLXMLReader::getChildElement(reader.getRootElement(), L1("c"), &child), PL_SUCCESS);
    EXPECT_EQ(child.tagName(), L1("c"));
    EXPECT_EQ(CPLXMLReader::getChildElement(reader.getRootElement(), L1("d"), &child),
              PL_KEY_NOT_FOUND);
    EXPECT_EQ(CPLXMLReader::getChildElement(reader.getRootElement(), L1("c"), nullptr),
              PL_NULL_ARGUMENT);
}

TEST(XMLReader, LogsTheFileAndPlaceOfAMalformedFile)
{
    QTemporaryDir dir;
    const QString file = dir.filePath(L1("bad.xml"));
    writeBytes(file, "<a>\n<b>");
    static QStringList messages;
    messages.clear();
    const auto old = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext&, const QString& m) { messages.append(m); });
    CPLXMLReader reader;
    const int status = reader.loadXMLFile(file);
    qInstallMessageHandler(old);
    EXPECT_EQ(status, PL_MALFORMED_XML);
    ASSERT_EQ(messages.size(), 1);
    EXPECT_TRUE(messages[0].startsWith(QStringLiteral("%1:%2:%3: malformed XML: ")
                                           .arg(file)
                                           .arg(reader.getErrorLine())
                                           .arg(reader.getErrorColumn())))
        << messages[0].toStdString();
}

// Every kind of document the writer produces, checked by parsers that are not ours.
class WellFormed : public SpectralFile
{
protected:
    QList<QPair<QString, QByteArray>> documents()
    {
        QBuffer small;
        small.open(QIODevice::WriteOnly);
        CPLSpectralWrapper wrapper;
        wrapper.createSpectralXMLDocument(&small);
        writeSmallDocument(wrapper);
        EXPECT_EQ(wrapper.setCloseSpectralAnalysis(), PL_SUCCESS);
        return { { L1("small"), small.data() },
                 { L1("sample"), writtenBytes(spectralSampleDocument()) },
                 { L1("escaped"), writtenBytes(escapedDocument()) },
                 { L1("empty"), writtenBytes(_tagSSpectralDocument()) } };
    }
};

TEST_F(WellFormed, ByQXmlStreamReader)
{
    for (const auto& document : documents()) {
        QXmlStreamReader xml(document.second);
        int elements = 0;
        while (!xml.atEnd())
            elements += xml.readNext() == QXmlStreamReader::StartElement;
        EXPECT_FALSE(xml.hasError())
            << document.first.toStdString() << ": " << xml.errorString().toStdString();
        EXPECT_GE(elements, 3) << document.first.toStdString();
    }
}

TEST_F(WellFormed, ByXmllint)
{
    const QString xmllint = QStandardPaths::findExecutable(L1("xmllint"));
    if (xmllint.isEmpty())
        GTEST_SKIP() << "xmllint is not installed (scripts/install-deps.sh xml installs it)";
    for (const auto& document : documents()) {
        const QString file = m_dir.filePath(document.first + L1(".xml"));
        writeBytes(file, document.second);
        QProcess process;
        process.start(xmllint, { L1("--noout"), file });
        ASSERT_TRUE(process.waitForFinished(30000));
        EXPECT_EQ(process.exitCode(), 0)
            << document.first.toStdString() << ": " << process.readAllStandardError().toStdString();
    }
    // xmllint does find what is malformed.
    writeBytes(path("bad.xml"), "<a x=\"<\"/>");
    QProcess process;
    process.start(xmllint, { L1("--noout"), path("bad.xml") });
    ASSERT_TRUE(process.waitForFinished(30000));
    EXPECT_NE(process.exitCode(), 0);
}

TEST_F(SpectralFile, TheSampleIsWhatTheWriterWritesNow)
{
    ASSERT_EQ(writeSpectralSample(path("s.xml")), PL_SUCCESS);
    const QByteArray sample = readBytes(SAMPLE);
    ASSERT_FALSE(sample.isEmpty()) << SAMPLE.toStdString();
    EXPECT_EQ(readBytes(path("s.xml")), sample)
        << "regenerate it with tests/make_spectral_sample " << SAMPLE.toStdString();
}

} // namespace
