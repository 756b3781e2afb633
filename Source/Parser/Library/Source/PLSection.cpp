#include "PLSection.h"

#include "PLConstants.h"
#include "PLText_p.h"
#include "PLStatus.h"


namespace {

// The older key of the rotating animal holder's angle, read when "MVI-2 Angle" is absent.
const QString OLD_MOUSE_SPINNER_ANGLE = QStringLiteral("MuVI Angle");

// The inline-comment rule: a "#" starts a comment; what stands before it, trimmed, is the
// plain text.
QString withoutInlineComment(const QString& text)
{
    const int hash = text.indexOf(QLatin1Char('#'));
    return hash < 0 ? text : text.left(hash).trimmed();
}

QString fromSpan(PLText::Span<QChar> span)
{
    return QString(span.begin, static_cast<int>(span.size()));
}

// Conversions of the typed getters: Qt's own decimal parsing, which gives 0 for text that is
// not a number of the type.
template<typename T>
T numberFromText(const QString& text);
template<>
int numberFromText<int>(const QString& text) { return text.toInt(); }
template<>
long numberFromText<long>(const QString& text) { return text.toLong(); }
template<>
short numberFromText<short>(const QString& text) { return text.toShort(); }
template<>
float numberFromText<float>(const QString& text) { return text.toFloat(); }
template<>
double numberFromText<double>(const QString& text) { return text.toDouble(); }

// Formats of the typed setters: decimal integers, and "%f" (six decimals) for both floating
// point types, a float being widened to double first.
QString textFromNumber(long value) { return QString::number(value); }
QString textFromNumber(double value) { return QString::asprintf("%f", value); }

} // namespace

CPLSection::CPLSection() = default;

CPLSection::CPLSection(const QString& sectionKey, const QString& sectionName)
    : m_strSectionKey(sectionKey)
    , m_strSectionName(sectionName)
{
}

CPLSection::CPLSection(const CPLSection& other) = default;
CPLSection& CPLSection::operator=(const CPLSection& other) = default;
CPLSection::~CPLSection() = default;

void CPLSection::clearKeyValuePairs()
{
    m_KeyList.clear();
    m_Values.clear();
    m_KeyOrder.clear();
    m_iLineCount = 0;
}

void CPLSection::loadSectionData(const QString& text)
{
    loadSectionData(QStringView(text));
}

void CPLSection::loadSectionData(QStringView text)
{
    using Span = PLText::Span<QChar>;
    Span body = PLText::trimmed(Span { text.data(), text.data() + text.size() });
    // The body is read as C text: it ends at its first NUL.
    if (const QChar* nul = PLText::find(body.begin, body.end, '\0'))
        body.end = nul;

    int commentNumber = 0;
    int lines = 0;
    for (const QChar* lineBegin = body.begin; lineBegin < body.end; ++lines) {
        // One pass over the line finds its end, its first colon and its first "#".
        const QChar* colon = nullptr;
        const QChar* hash = nullptr;
        const QChar* c = lineBegin;
        for (; c != body.end && *c != QLatin1Char('\n'); ++c) {
            if (*c == QLatin1Char(':') && !colon)
                colon = c;
            else if (*c == QLatin1Char('#') && !hash)
                hash = c;
        }
        const Span line { lineBegin, c == body.end ? c : c + 1 };
        lineBegin = line.end;

        const Span trimmedLine = PLText::trimmed(line);
        if (colon && (!hash || hash > colon)) {
            // The colon's offset in the untrimmed line cuts the trimmed line.
            const qsizetype cut = colon - line.begin;
            const qsizetype size = trimmedLine.size();
            const QChar* start = trimmedLine.begin;
            const Span key { start, start + qMin(cut, size) };
            const Span value { start + qMin(cut + 1, size), trimmedLine.end };
            appendKeyValueEntry(fromSpan(PLText::trimmed(key)), fromSpan(PLText::trimmed(value)));
        } else {
            QString comment = fromSpan(trimmedLine);
            if (!comment.isEmpty() && !comment.startsWith(QLatin1Char('#')))
                comment.prepend(QLatin1Char('#'));
            appendEntry(PLConstants::COMMENTLINE_KEY + QString::number(commentNumber++), comment);
        }
    }
    m_iLineCount = lines;
}

void CPLSection::appendEntry(const QString& key, const QString& value)
{
    m_Values.insert(key, value);
    m_KeyList.append(key);
}

void CPLSection::appendKeyValueEntry(const QString& key, const QString& value)
{
    m_KeyOrder.append(m_KeyList.size());
    appendEntry(key, value);
}

void CPLSection::saveSectionData(QString& text) const
{
    text = PLConstants::SECTIONKEY_PREFIX + m_strSectionKey + QLatin1String(":\t")
        + m_strSectionName + PLConstants::STR_NEWLINE;
    const int lines = qMin(m_iLineCount, m_KeyList.size());
    for (int i = 0; i < lines; ++i) {
        const QString& key = m_KeyList.at(i);
        const QString value = m_Values.value(key);
        if (isCommentKey(key))
            text += value;
        else
            text += key + QLatin1String(":\t") + value;
        text += QLatin1Char('\n');
    }
    text += QLatin1Char('\n');
}

int CPLSection::getSectionName(QString* name, bool raw) const
{
    if (!name)
        return PL_INVALID_ARGUMENT;
    *name = raw ? m_strSectionName : withoutInlineComment(m_strSectionName);
    return PL_SUCCESS;
}

int CPLSection::setSectionName(const QString& name)
{
    m_strSectionName = name;
    return PL_SUCCESS;
}

int CPLSection::getSectionKey(QString* key) const
{
    if (!key)
        return PL_INVALID_ARGUMENT;
    *key = m_strSectionKey;
    return PL_SUCCESS;
}

int CPLSection::setSectionKey(const QString& key)
{
    if (key.isNull())
        return PL_INVALID_ARGUMENT;
    m_strSectionKey = key;
    return PL_SUCCESS;
}

int CPLSection::addKeyValue(const QString& key, const QString& value)
{
    if (key.isEmpty())
        return PL_EMPTY_KEY;
    if (!m_Values.contains(key)) {
        m_KeyOrder.append(m_KeyList.size());
        m_KeyList.append(key);
        ++m_iLineCount;
    }
    m_Values.insert(key, value);
    return PL_SUCCESS;
}

int CPLSection::getValue(const QString& key, QString* value) const
{
    if (!value || key.isEmpty())
        return PL_NULL_ARGUMENT;
    const auto it = m_Values.constFind(key);
    if (it == m_Values.constEnd())
        return PL_KEY_NOT_FOUND;
    *value = withoutInlineComment(*it);
    return PL_SUCCESS;
}

int CPLSection::getRawValue(const QString& key, QString* value) const
{
    if (!value)
        return PL_NULL_ARGUMENT;
    const auto it = m_Values.constFind(key);
    if (it == m_Values.constEnd())
        return PL_KEY_NOT_FOUND;
    *value = *it;
    return PL_SUCCESS;
}

int CPLSection::setValue(const QString& key, const QString& value)
{
    const auto it = m_Values.find(key);
    if (it == m_Values.end())
        return PL_KEY_NOT_FOUND;
    const int oldComment = it->indexOf(QLatin1Char('#'));
    if (value.contains(QLatin1Char('#')) || oldComment < 0)
        *it = value;
    else
        *it = value + QLatin1Char('\t') + it->mid(oldComment);
    return PL_SUCCESS;
}

int CPLSection::setRawValue(const QString& key, const QString& value)
{
    const auto it = m_Values.find(key);
    if (it == m_Values.end())
        return PL_KEY_NOT_FOUND;
    *it = value;
    return PL_SUCCESS;
}

bool CPLSection::isKeyPresent(const QString& key) const
{
    return m_Values.contains(key);
}

QString CPLSection::operator[](const QString& key) const
{
    QString value;
    return getValue(key, &value) == PL_SUCCESS ? value : QString();
}

int CPLSection::keyIndex(int position) const
{
    return position < m_KeyOrder.size() ? m_KeyOrder.at(position) : position;
}

QString CPLSection::operator[](int position) const
{
    QString key;
    return getKey(position, &key) == PL_SUCCESS ? (*this)[key] : QString();
}

int CPLSection::getKey(int position, QString* key) const
{
    if (position < 0 || position >= m_KeyList.size())
        return PL_INVALID_ARGUMENT;
    if (!key)
        return PL_NULL_ARGUMENT;
    *key = m_KeyList.at(keyIndex(position));
    return PL_SUCCESS;
}

int CPLSection::getKeyValuePairCount(int* count) const
{
    if (!count)
        return PL_NULL_ARGUMENT;
    *count = m_KeyOrder.size();
    return PL_SUCCESS;
}

int CPLSection::count() const
{
    return m_KeyOrder.size();
}

int CPLSection::getKeyList(QStringList* keys) const
{
    if (!keys)
        return PL_NULL_ARGUMENT;
    QStringList result;
    result.reserve(m_KeyOrder.size());
    for (const int index : m_KeyOrder)
        result.append(m_KeyList.at(index));
    *keys = result;
    return PL_SUCCESS;
}

int CPLSection::getValueList(QStringList* values) const
{
    if (!values)
        return PL_NULL_ARGUMENT;
    QStringList result;
    result.reserve(m_KeyOrder.size());
    for (const int index : m_KeyOrder)
        result.append(withoutInlineComment(m_Values.value(m_KeyList.at(index))));
    *values = result;
    return PL_SUCCESS;
}

int CPLSection::getRawValueList(QStringList* values) const
{
    if (!values)
        return PL_NULL_ARGUMENT;
    QStringList result;
    result.reserve(m_KeyOrder.size());
    for (const int index : m_KeyOrder)
        result.append(m_Values.value(m_KeyList.at(index)));
    *values = result;
    return PL_SUCCESS;
}

int CPLSection::getKeylistFromKeyAndSubkey(const QString& key, const QString& subkey,
                                           QStringList* keys) const
{
    if (key.isEmpty() || !keys)
        return PL_NULL_ARGUMENT;
    for (const int index : m_KeyOrder) {
        const QString& candidate = m_KeyList.at(index);
        if (candidate.startsWith(key, Qt::CaseInsensitive)
            && (subkey.isNull() || candidate.contains(subkey, Qt::CaseInsensitive)))
            keys->append(candidate);
    }
    return PL_SUCCESS;
}

int CPLSection::getMVIAngle(double* angle) const
{
    const QString& key = isKeyPresent(PLConstants::MOUSE_SPINNER_ANGLE)
        ? PLConstants::MOUSE_SPINNER_ANGLE
        : OLD_MOUSE_SPINNER_ANGLE;
    return getValue(key, angle);
}

template<typename T>
int CPLSection::getNumber(const QString& key, T* value) const
{
    if (!value)
        return PL_NULL_ARGUMENT;
    QString text;
    const int status = getValue(key, &text);
    if (status == PL_SUCCESS)
        *value = numberFromText<T>(text);
    return status;
}

int CPLSection::getValue(const QString& key, int* value) const { return getNumber(key, value); }
int CPLSection::getValue(const QString& key, long* value) const { return getNumber(key, value); }
int CPLSection::getValue(const QString& key, short* value) const { return getNumber(key, value); }
int CPLSection::getValue(const QString& key, float* value) const { return getNumber(key, value); }
int CPLSection::getValue(const QString& key, double* value) const { return getNumber(key, value); }

int CPLSection::setValue(const QString& key, int value) { return setValue(key, textFromNumber(long(value))); }
int CPLSection::setValue(const QString& key, long value) { return setValue(key, textFromNumber(value)); }
int CPLSection::setValue(const QString& key, short value) { return setValue(key, textFromNumber(long(value))); }
int CPLSection::setValue(const QString& key, float value) { return setValue(key, textFromNumber(double(value))); }
int CPLSection::setValue(const QString& key, double value) { return setValue(key, textFromNumber(value)); }

QStringList CPLSection::getEntryKeys() const
{
    return m_KeyList;
}

bool CPLSection::isCommentKey(const QString& key)
{
    return key.contains(PLConstants::COMMENTLINE_KEY, Qt::CaseInsensitive);
}
