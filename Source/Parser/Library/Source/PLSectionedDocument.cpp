#include "PLSectionedDocument.h"

#include "PLSection.h"
#include "PLStatus.h"

#include <algorithm>
#include <cstring>

QString CPLTextLocation::toString() const
{
    if (!isKnown())
        return QString();
    return file.isEmpty() ? QStringLiteral("line %1").arg(line)
                          : QStringLiteral("%1:%2").arg(file).arg(line);
}

CPLSectionedDocument::CPLSectionedDocument() = default;

CPLSectionedDocument::~CPLSectionedDocument()
{
    qDeleteAll(m_Sections);
}

bool CPLSectionedDocument::isSectionPresent(const QString& sectionKey) const
{
    return m_Sections.value(CPLCaseInsensitiveKey::lookup(sectionKey)) != nullptr;
}

CPLSection* CPLSectionedDocument::operator[](const QString& sectionKey) const
{
    // Reads come in runs from one section: the key asked for last, compared by its text, finds
    // it again without a lookup. The key is kept as a copy of its own, so that a caller's
    // buffer that changes behind the same pointer (QString::fromRawData()) is seen as the new
    // text it holds.
    const qsizetype size = sectionKey.size();
    if (m_pLastSection && size == m_LastSectionKey.size()
        && std::memcmp(sectionKey.constData(), m_LastSectionKey.constData(),
                       size_t(size) * sizeof(QChar))
            == 0)
        return m_pLastSection;
    CPLSection* section = m_Sections.value(CPLCaseInsensitiveKey::lookup(sectionKey));
    if (section) {
        m_LastSectionKey.resize(int(size));
        std::copy(sectionKey.constData(), sectionKey.constData() + size, m_LastSectionKey.data());
        m_pLastSection = section;
    }
    return section;
}

CPLSection* CPLSectionedDocument::operator[](int position) const
{
    if (position < 0 || position >= m_SectionKeys.size())
        return nullptr;
    return (*this)[m_SectionKeys.at(position)];
}

int CPLSectionedDocument::getSectionCount(int* count) const
{
    if (!count)
        return PL_NULL_ARGUMENT;
    *count = m_iSectionCount;
    return PL_SUCCESS;
}

QStringList CPLSectionedDocument::getSectionKeys() const
{
    return m_SectionKeys;
}

CPLTextLocation CPLSectionedDocument::getSectionOrigin(const QString& sectionKey) const
{
    return m_Origins.value(CPLCaseInsensitiveKey::lookup(sectionKey));
}

CPLTextLocation CPLSectionedDocument::getKeyOrigin(const QString& sectionKey,
                                                   const QString& key) const
{
    const auto merged = m_KeyOrigins.constFind(CPLCaseInsensitiveKey::lookup(sectionKey));
    if (merged != m_KeyOrigins.constEnd()) {
        const auto origin = merged->constFind(CPLCaseInsensitiveKey::lookup(key));
        if (origin != merged->constEnd())
            return origin.value();
    }
    return getSectionOrigin(sectionKey);
}

QStringList CPLSectionedDocument::getLoadWarnings() const
{
    QStringList messages;
    for (const CPLLoadWarning& warning : m_LoadWarnings)
        messages.append(warning.toString());
    return messages;
}

QList<CPLLoadWarning> CPLSectionedDocument::getLoadWarningList() const
{
    return m_LoadWarnings;
}

bool CPLSectionedDocument::insertSection(std::unique_ptr<CPLSection>& section,
                                         const QString& mapKey, int position)
{
    QString key = mapKey;
    if (key.isEmpty())
        section->getSectionKey(&key);
    if (m_Sections.value(CPLCaseInsensitiveKey::lookup(key)))
        return false;
    // Either both the order and the map hold the section or neither does, whatever throws:
    // the order first, taken back when the map cannot take the section. The section is
    // released from the caller only once the map holds it.
    if (position < 0 || position > m_SectionKeys.size())
        position = m_SectionKeys.size();
    m_SectionKeys.insert(position, key);
    try {
        m_Sections.insert(key, section.get());
    } catch (...) {
        m_SectionKeys.removeAt(position);
        throw;
    }
    section.release();
    ++m_iSectionCount;
    return true;
}

bool CPLSectionedDocument::holdsSection(const CPLSection* section) const
{
    if (!section)
        return false;
    QString key;
    section->getSectionKey(&key);
    return m_Sections.value(CPLCaseInsensitiveKey::lookup(key)) == section;
}

std::unique_ptr<CPLSection> CPLSectionedDocument::takeSection(const QString& sectionKey)
{
    const auto it = m_Sections.find(CPLCaseInsensitiveKey::lookup(sectionKey));
    if (it == m_Sections.end())
        return nullptr;
    std::unique_ptr<CPLSection> section(it.value());
    m_Sections.erase(it);
    m_pLastSection = nullptr;
    m_Origins.remove(CPLCaseInsensitiveKey::lookup(sectionKey));
    m_KeyOrigins.remove(CPLCaseInsensitiveKey::lookup(sectionKey));
    // Sections are usually taken in order (clearing), so the key is found at the front.
    const int position = sectionPosition(sectionKey);
    if (position >= 0)
        m_SectionKeys.removeAt(position);
    --m_iSectionCount;
    return section;
}

void CPLSectionedDocument::replaceSection(std::unique_ptr<CPLSection> section)
{
    QString key;
    section->getSectionKey(&key);
    const int position = sectionPosition(key);
    takeSection(key);
    insertSection(section, QString(), position);
}

bool CPLSectionedDocument::moveSection(const QString& sectionKey, int position)
{
    const int from = sectionPosition(sectionKey);
    if (from < 0 || position < 0 || position >= m_SectionKeys.size())
        return false;
    m_SectionKeys.move(from, position);
    return true;
}

bool CPLSectionedDocument::mergeSection(const CPLSection& from, RepeatedSectionRule rule,
                                        const CPLTextLocation& origin)
{
    QString sectionKey;
    from.getSectionKey(&sectionKey);
    CPLSection* into = (*this)[sectionKey];
    if (!into)
        return false;
    // Each line's own value: of a key that `from` holds twice, the last line replaces.
    const QStringList keys = from.getEntryKeys();
    const QStringList values = from.getEntryValues(true);
    auto& keyOrigins = m_KeyOrigins[sectionKey];
    for (int i = 0; i < keys.size(); ++i) {
        const QString& key = keys.at(i);
        if (CPLSection::isCommentKey(key))
            continue;
        if (!into->isKeyPresent(key))
            into->appendLoadedEntry(key, values.at(i));
        else if (rule == ReplaceValues)
            into->setRawValue(key, values.at(i));
        else
            continue;
        keyOrigins.insert(key, origin);
    }
    return true;
}

void CPLSectionedDocument::deleteSections()
{
    qDeleteAll(m_Sections);
    m_Sections.clear();
    m_SectionKeys.clear();
    m_iSectionCount = 0;
    m_pLastSection = nullptr;
    m_Origins.clear();
    m_KeyOrigins.clear();
}

int CPLSectionedDocument::sectionPosition(const QString& sectionKey) const
{
    for (int i = 0; i < m_SectionKeys.size(); ++i) {
        if (m_SectionKeys.at(i).compare(sectionKey, Qt::CaseInsensitive) == 0)
            return i;
    }
    return -1;
}

void CPLSectionedDocument::addTextSource(int textLine, const QString& file, int fileLine)
{
    m_TextSources.append({ textLine, file, fileLine });
}

void CPLSectionedDocument::clearTextSources()
{
    m_TextSources.clear();
}

CPLTextLocation CPLSectionedDocument::textLocation(int textLine) const
{
    // The last source that begins at or before the line.
    const auto after = std::upper_bound(
        m_TextSources.begin(), m_TextSources.end(), textLine,
        [](int line, const TextSource& source) { return line < source.textLine; });
    if (after == m_TextSources.begin())
        return { QString(), textLine };
    const TextSource& source = *(after - 1);
    return { source.file, source.fileLine + textLine - source.textLine };
}

void CPLSectionedDocument::setSectionOrigin(const QString& sectionKey,
                                            const CPLTextLocation& origin)
{
    if (isSectionPresent(sectionKey))
        m_Origins.insert(sectionKey, origin);
}

void CPLSectionedDocument::setLoadWarnings(QList<CPLLoadWarning> warnings)
{
    if (!m_TextSources.isEmpty()) {
        for (CPLLoadWarning& warning : warnings) {
            const CPLTextLocation at = textLocation(warning.line());
            if (warning.relatedLine() > 0)
                warning.setRelatedLine(textLocation(warning.relatedLine()).line);
            warning.setFile(at.file);
            warning.setLine(at.line);
        }
    }
    m_LoadWarnings = std::move(warnings);
}
