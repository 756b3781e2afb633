#include "PLLoadWarning.h"

namespace {

// The lines a warning counts, with their verb: "a line ends" or "3 lines (the first here)
// end".
QString lines(int count, const char* singular, const char* plural)
{
    return count == 1
        ? QStringLiteral("a line %1").arg(QLatin1String(singular))
        : QStringLiteral("%1 lines (the first here) %2").arg(count).arg(QLatin1String(plural));
}

} // namespace

CPLLoadWarning::CPLLoadWarning(Kind kind, int line, int count, const QString& section,
                               const QString& detail)
    : m_eKind(kind)
    , m_iLine(line)
    , m_iCount(count)
    , m_strSection(section)
    , m_strDetail(detail)
{
}

QString CPLLoadWarning::message() const
{
    const QString quotedDetail = QLatin1Char('"') + m_strDetail + QLatin1Char('"');
    switch (m_eKind) {
    case ByteOrderMark:
        return QStringLiteral("a UTF-8 byte order mark begins the file; it is skipped and not "
                              "written back");
    case BlankLines:
        return QStringLiteral("saving drops or adds blank lines or white space %1 (it writes no "
                              "blank line before a section's first line, one empty line after "
                              "each section and two line feeds at the end of the file)")
            .arg(m_iCount == 1 ? QStringLiteral("here")
                               : QStringLiteral("in %1 places (the first here)").arg(m_iCount));
    case LineEnds:
        return lines(m_iCount, "ends", "end")
            + QStringLiteral(" otherwise than saving ends it (CR LF after a section header, LF "
                             "after every other line)");
    case HeaderForm:
        return QStringLiteral("the section header is not in the form \"*** <key>:<tab><name>\" "
                              "that saving writes");
    case Separator:
        return lines(m_iCount, "separates", "separate")
            + QStringLiteral(" the key from the value otherwise than by the colon and tab that "
                             "saving writes");
    case Blanks:
        return lines(m_iCount, "has", "have")
            + QStringLiteral(" blanks around a key, a value or a text, which saving drops");
    case ShiftedKey:
        return lines(m_iCount, "begins", "begin")
            + QStringLiteral(" with blanks, so its key is cut at a shifted place (%1)")
                  .arg(quotedDetail);
    case TextLine:
        return lines(m_iCount, "holds", "hold")
            + QStringLiteral(" text that is not a comment; saving writes it with a \"#\" in "
                             "front");
    case RepeatedKey:
        return lines(m_iCount, "repeats", "repeat")
            + QStringLiteral(" the key of a line before it (%1%2); saving writes the last value "
                             "on every line of the key, and an edit of it is refused")
                  .arg(quotedDetail,
                       m_iRelatedLine > 0 ? QStringLiteral(" on line %1").arg(m_iRelatedLine)
                                          : QString());
    case KeyLikeHeader:
        return QStringLiteral("the key %1 begins with \"***\", so its line reads back as a "
                              "section header")
            .arg(quotedDetail);
    case CommentKey:
        return QStringLiteral("the key %1 contains \"CommentLine \", which marks comment lines; "
                              "it is written back as its value alone")
            .arg(quotedDetail);
    case RepeatedSection:
        return QStringLiteral("section %1 repeats the key of a section before it and is left out")
            .arg(quotedDetail);
    case MergedSection:
        return QStringLiteral("section %1 repeats the key of a section before it; its keys are "
                              "merged into that section")
            .arg(quotedDetail);
    case HeaderInLeadingLines:
        return QStringLiteral("the section header %1 has no blank after \"***\", so it is also "
                              "kept as a line before the first section and written twice")
            .arg(quotedDetail);
    case NulByte:
        return QStringLiteral("a NUL byte ends the text; what follows it is not read");
    case CutCopy:
        return m_iLine > 1
            ? QStringLiteral("a metadata copy begins here that was cut off before its end; the "
                             "last complete copy, before it, was loaded")
            : QStringLiteral("this metadata copy does not end as a save ends it (it may have "
                             "been cut off) and no complete copy precedes it; it was loaded as "
                             "it stands");
    }
    return QString();
}

QString CPLLoadWarning::toString() const
{
    QString text = m_strFile.isEmpty() ? QStringLiteral("line %1").arg(m_iLine)
                                       : QStringLiteral("%1:%2").arg(m_strFile).arg(m_iLine);
    text += QLatin1String(": ");
    if (!m_strSection.isEmpty() && m_eKind != RepeatedSection && m_eKind != MergedSection)
        text += QStringLiteral("section \"%1\": ").arg(m_strSection);
    return text + message();
}
