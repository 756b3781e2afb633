#include "PLSectionScanner.h"

#include "PLAssert_p.h"
#include "PLConstants.h"
#include "PLLogging_p.h"
#include "PLScanner_p.h"
#include "PLSection.h"
#include "PLStatus.h"

#include <cstdlib>
#include <cstring>

namespace {

// The length of the buffer of the walk in progress on this thread: a call that continues at
// the position the previous call left on the same buffer reuses it instead of measuring the
// whole buffer again, which would make a walk quadratic.
struct Walk
{
    const char* buffer = nullptr;
    qint64 position = -1;
    qint64 length = 0;
};
thread_local Walk currentWalk;

qint64 walkLength(const char* buffer, qint64 position)
{
    if (position > 0 && currentWalk.buffer == buffer && currentWalk.position == position)
        return currentWalk.length;
    return static_cast<qint64>(std::strlen(buffer));
}

void continueWalk(const char* buffer, qint64 position, qint64 length)
{
    currentWalk = Walk { buffer, position, length };
}

// A malloc'd NUL-terminated copy of [begin, end); the range may include the buffer's NUL.
char* copyRange(const char* buffer, qint64 begin, qint64 end)
{
    const auto size = static_cast<size_t>(end - begin);
    auto* copy = static_cast<char*>(std::malloc(size + 1));
    std::memcpy(copy, buffer + begin, size);
    copy[size] = '\0';
    return copy;
}

} // namespace

char* readLine(const char* buffer, long* position)
{
    if (!buffer)
        return nullptr;
    if (!position) {
        // The first line: found without measuring the whole buffer.
        const qint64 end = static_cast<qint64>(std::strcspn(buffer, "\n"));
        return (buffer[end] == '\n' || end > 0) ? copyRange(buffer, 0, end + 1) : nullptr;
    }
    const qint64 begin = *position;
    if (begin < 0)
        return nullptr;
    const qint64 length = walkLength(buffer, begin);
    if (begin >= length)
        return nullptr;
    const qint64 end = PLScan::lineEnd(buffer, length, begin);
    *position = static_cast<long>(end);
    continueWalk(buffer, end, length);
    return copyRange(buffer, begin, end);
}

char* getNextSection(const char* buffer, long* position)
{
    if (!buffer)
        return nullptr;
    qint64 cursor = position ? *position : 0;
    if (cursor < 0)
        return nullptr;
    const qint64 length = walkLength(buffer, cursor);
    if (position && cursor >= length)
        return nullptr;
    PLScan::SectionRange section;
    const bool found = PLScan::nextSection(buffer, length, cursor, section);
    if (position) {
        *position = static_cast<long>(cursor);
        continueWalk(buffer, cursor, length);
    }
    return found ? copyRange(buffer, section.begin, section.end) : nullptr;
}

void ParseSectionField(const char* line, CPLSection* section)
{
    PL_ASSERT(line != nullptr);
    PL_ASSERT(section != nullptr);
    const char* colon = std::strchr(line, ':');
    if (!colon) {
        qCWarning(lcOvLoad, "ParseSectionField: a body line without a colon was passed; nothing added");
        return;
    }
    // The line end that readLine() leaves on a line ends the line, not the value: a value
    // that held it could not stand in the file.
    const char* end = colon + std::strlen(colon);
    if (end != colon + 1 && end[-1] == '\n')
        --end;
    if (end != colon + 1 && end[-1] == '\r')
        --end;
    const QString key = QString::fromLatin1(line, static_cast<int>(colon - line));
    const QString value = QString::fromLatin1(colon + 1, static_cast<int>(end - colon - 1));
    if (section->addKeyValue(key, value) != PL_SUCCESS)
        qCWarning(lcOvLoad, "ParseSectionField: the line \"%s\" cannot stand in a section; nothing "
                            "added",
                  qUtf8Printable(key + QLatin1Char(':') + value));
}

QString getSectionBuffer(const QString& text)
{
    const QString& prefix = PLConstants::SECTIONKEY_PREFIX;
    const int start = text.indexOf(prefix);
    if (start < 0)
        return QString();
    const int next = text.indexOf(prefix, start + 1);
    return next < 0 ? text.mid(start) : text.mid(start, next - start);
}
