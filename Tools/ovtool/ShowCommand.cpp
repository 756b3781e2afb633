#include "Commands.h"
#include "Document.h"
#include "Tool.h"

#include "PLAnalyzedClickInfo.h"
#include "PLConstants.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <QDir>
#include <QFileInfo>
#include <QPair>
#include <QVector>

#include <algorithm>

namespace {

const QLatin1String INDENT("  ");
// Between the widest "key:" of a section and its values.
const QLatin1String GAP("  ");

// The section's header line, then one line per entry: "key:" padded to the widest key of the
// section, then the value; comment lines, when shown, stand in place with the same indent.
void printSection(QTextStream& out, const CPLSection& section, bool raw, bool comments)
{
    QString key;
    section.getSectionKey(&key);
    const QString name = nameOf(section, raw);
    out << QLatin1String("*** ") << key << QLatin1Char(':');
    if (!name.isEmpty())
        out << QLatin1Char(' ') << name;
    out << QLatin1Char('\n');

    const int count = section.getEntryCount();
    int width = 0;
    for (int i = 0; i < count; ++i) {
        const QString entryKey = section.getEntryKey(i);
        if (!CPLSection::isCommentKey(entryKey))
            width = std::max(width, entryKey.size() + 1);
    }
    for (int i = 0; i < count; ++i) {
        const Entry entry = entryAt(section, i);
        if (entry.isComment) {
            if (comments && !entry.value.isEmpty())
                out << INDENT << entry.value;
            if (comments)
                out << QLatin1Char('\n');
            continue;
        }
        const QString value = raw ? entry.rawValue : entry.value;
        const QString label = entry.key + QLatin1Char(':');
        out << INDENT;
        if (value.isEmpty())
            out << label;
        else
            out << label.leftJustified(width) << GAP << value;
        out << QLatin1Char('\n');
    }
}

using Line = QPair<QString, QString>;

// What the analysis of an analysed click is, as label and value lines: only what the file
// holds. Empty for a click that is no analysis result (a raw acquisition's ClickInfo).
QVector<Line> analysisLines(const CPLAnalyzedClickInfo& document)
{
    using Kind = CPLAnalyzedClickInfo::Kind;
    QVector<Line> lines;
    Kind kind = Kind::Other;
    QString kindText;
    const bool hasKind = document.getKindText(&kindText) == PL_SUCCESS;
    document.getKind(&kind);
    const bool isAnalysis = document.isSectionPresent(CPLAnalyzedClickInfo::ANALYSIS_SECTION_KEY)
        || (hasKind && kind != Kind::RawData);
    if (!isAnalysis)
        return lines;
    const auto add = [&lines](const char* label, const QString& value) {
        if (!value.isEmpty())
            lines.append(qMakePair(QLatin1String(label) + QLatin1Char(':'), value));
    };
    add("Kind", hasKind ? kindText : QStringLiteral("(none)"));
    CPLAnalyzedClickInfo::ImageMath math;
    const int mathStatus = document.getImageMath(&math);
    if (mathStatus == PL_SUCCESS) {
        add("Image math", math.operation);
        add("k", QString::number(math.k, 'g', QLocale::FloatingPointShortest));
        add("A", math.aClickNumber);
        add("B", math.bClickNumber);
        add("Photograph", math.photoClickNumber);
    } else if (mathStatus == PL_INVALID_ARGUMENT) {
        add("Image math", QStringLiteral("(k is not a number)"));
    }
    CPLAnalyzedClickInfo::KineticOperation operation;
    QString text;
    const int kineticStatus = document.getKinetic(&operation, &text);
    if (kineticStatus == PL_SUCCESS)
        add("Kinetic",
            (operation == CPLAnalyzedClickInfo::KineticOperation::Accumulated
                 ? PLConstants::ACCUM_KINETIC_OPERN
                 : PLConstants::SINGLE_CLICK_KINETIC)
                + (text.isEmpty() ? QString() : QLatin1String(" of ") + text));
    else if (kineticStatus == PL_INVALID_ARGUMENT)
        add("Kinetic", QStringLiteral("(unknown operation)"));
    QString name;
    if (document.getSpectralUnmixing(&text, &name) == PL_SUCCESS)
        add("Unmixing", name.isEmpty() ? text : name + QLatin1String(" of ") + text);
    if (document.getBackgroundClick(&text) == PL_SUCCESS)
        add("Background click", text);
    if (document.getFolderOnDisk(&text) == PL_SUCCESS)
        add("Folder on disk", text);
    QStringList flags;
    using Correction = CPLAnalyzedClickInfo::Correction;
    for (const Correction correction :
         { Correction::Saturated, Correction::CcdCorrected, Correction::BackgroundCorrected,
           Correction::FlatFieldCorrected, Correction::Rotated }) {
        bool isSet = false;
        const int status = document.getCorrection(correction, &isSet);
        if (status == PL_KEY_NOT_FOUND || status == PL_SECTION_NOT_PRESENT)
            continue;
        flags.append(CPLAnalyzedClickInfo::correctionKey(correction) + QLatin1Char(' ')
                     + (status != PL_SUCCESS ? QStringLiteral("?")
                            : isSet          ? PLConstants::STRING_YES
                                             : PLConstants::STRING_NO));
    }
    add("Flags", flags.join(QLatin1String(", ")));
    return lines;
}

void printAnalysis(QTextStream& out, const QVector<Line>& lines)
{
    int width = 0;
    for (const Line& line : lines)
        width = std::max(width, line.first.size());
    out << QLatin1String("Analysis\n");
    for (const Line& line : lines)
        out << INDENT << line.first.leftJustified(width) << GAP << line.second << QLatin1Char('\n');
}

// A folder holding an analysis result names its "AnalyzedClickInfo.txt".
QString documentPath(const QString& path)
{
    const QString analysis = QDir(path).filePath(PLConstants::ANALYZED_CLICKINFO_FILENAME);
    return QFileInfo(path).isDir() && QFileInfo::exists(analysis) ? analysis : path;
}

} // namespace

int runShow(const QStringList& arguments)
{
    CommandLine commandLine(
        QStringLiteral("show"),
        QStringLiteral(
            "Prints the lines before the first section of FILE, then every section\n"
            "in file order: its header line, then its keys with their values aligned.\n"
            "An analysis result (an \"AnalyzedClickInfo.txt\", or a folder holding one, given\n"
            "as FILE) is first summed up under \"Analysis\": its kind (ClickInfoType), the\n"
            "image math with k and its A, B and photograph clicks, the kinetic operation,\n"
            "the unmixed concentration and dataset, the background click, the folder on\n"
            "disk and the correction flags, each when the file holds it."));
    commandLine.addArgument(QStringLiteral("FILE"), readFileArgumentHelp());
    commandLine.addOption(QStringLiteral("raw"),
                          QStringLiteral("Keeps the inline comments (from a \"#\" on) of values "
                                         "and section names."));
    commandLine.addOption(
        QStringLiteral("comments"),
        QStringLiteral("Also prints the comment lines of each section in place."));
    commandLine.setNotes(WARNINGS_NOTE);
    if (const auto done = commandLine.parse(arguments))
        return *done;

    const QString path = documentPath(commandLine.argument(0));
    CPLAnalyzedClickInfo document;
    if (const int status = loadDocument(path, &document))
        return status;
    warnOfLoad(document.getLoadWarningList());

    QTextStream& out = standardOutput();
    const QStringList leadingLines = document.getLeadingLines();
    for (const QString& line : leadingLines)
        out << line << QLatin1Char('\n');
    // A blank line stands between the leading lines, the analysis and the sections, and
    // between sections.
    bool separate = !leadingLines.isEmpty();
    const QVector<Line> analysis = analysisLines(document);
    if (!analysis.isEmpty()) {
        if (separate)
            out << QLatin1Char('\n');
        printAnalysis(out, analysis);
        separate = true;
    }
    const QStringList sectionKeys = document.getSectionKeys();
    for (const QString& sectionKey : sectionKeys) {
        if (separate)
            out << QLatin1Char('\n');
        separate = true;
        printSection(out, *document[sectionKey], commandLine.isSet(QStringLiteral("raw")),
                     commandLine.isSet(QStringLiteral("comments")));
    }
    return ExitSuccess;
}
