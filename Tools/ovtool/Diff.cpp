#include "Diff.h"

#include <QVector>

#include <algorithm>
#include <cstring>

namespace {

const int CONTEXT = 3;
// The most pairs of lines (changed lines before times changed lines after) that are matched
// line by line; a larger changed region is shown as removed and added whole.
const qint64 MATCHED_PAIRS_MAX = qint64(1) << 22;

// A line of the text compared, which it refers to: a diff of a large file copies no line.
struct Line
{
    const char* text; // without its line feed
    int size;
    bool lineFeed;
    bool operator==(const Line& other) const
    {
        return lineFeed == other.lineFeed && size == other.size
            && std::memcmp(text, other.text, size_t(size)) == 0;
    }
};
using Lines = QVector<Line>;

// One line of the diff: kept (' '), removed ('-') or added ('+').
struct Op
{
    char kind;
    const Line* line;
};
using Ops = QVector<Op>;

Lines splitLines(const QByteArray& bytes)
{
    Lines lines;
    int begin = 0;
    while (begin < bytes.size()) {
        const int lineFeed = bytes.indexOf('\n', begin);
        if (lineFeed < 0) {
            lines.append({ bytes.constData() + begin, bytes.size() - begin, false });
            break;
        }
        lines.append({ bytes.constData() + begin, lineFeed - begin, true });
        begin = lineFeed + 1;
    }
    return lines;
}

// The changed region a[from, aEnd) against b[from, bEnd), by the longest common subsequence.
void matchRegion(const Lines& a, const Lines& b, int from, int aEnd, int bEnd, Ops* ops)
{
    const int m = aEnd - from;
    const int n = bEnd - from;
    if (qint64(m) * n > MATCHED_PAIRS_MAX) {
        for (int i = from; i < aEnd; ++i)
            ops->append({ '-', &a[i] });
        for (int j = from; j < bEnd; ++j)
            ops->append({ '+', &b[j] });
        return;
    }
    // common[i * (n + 1) + j]: the longest common subsequence of a[from + i...] and
    // b[from + j...].
    QVector<int> common((m + 1) * (n + 1), 0);
    const auto at = [n](int i, int j) { return i * (n + 1) + j; };
    for (int i = m - 1; i >= 0; --i) {
        for (int j = n - 1; j >= 0; --j) {
            common[at(i, j)] = a[from + i] == b[from + j]
                ? common[at(i + 1, j + 1)] + 1
                : std::max(common[at(i + 1, j)], common[at(i, j + 1)]);
        }
    }
    int i = 0;
    int j = 0;
    while (i < m || j < n) {
        if (i < m && j < n && a[from + i] == b[from + j]) {
            ops->append({ ' ', &a[from + i++] });
            ++j;
        } else if (j == n || (i < m && common[at(i + 1, j)] >= common[at(i, j + 1)])) {
            ops->append({ '-', &a[from + i++] });
        } else {
            ops->append({ '+', &b[from + j++] });
        }
    }
}

Ops diffLines(const Lines& a, const Lines& b)
{
    int prefix = 0;
    while (prefix < a.size() && prefix < b.size() && a[prefix] == b[prefix])
        ++prefix;
    int suffix = 0;
    while (suffix < a.size() - prefix && suffix < b.size() - prefix
           && a[a.size() - 1 - suffix] == b[b.size() - 1 - suffix])
        ++suffix;
    Ops ops;
    for (int i = 0; i < prefix; ++i)
        ops.append({ ' ', &a[i] });
    matchRegion(a, b, prefix, a.size() - suffix, b.size() - suffix, &ops);
    for (int i = a.size() - suffix; i < a.size(); ++i)
        ops.append({ ' ', &a[i] });
    return ops;
}

// "-a,b" or "+c,d": the first line of the hunk and its number of lines; with no lines, the
// line before the hunk.
QByteArray range(char sign, int linesBefore, int count)
{
    const int first = count > 0 ? linesBefore + 1 : linesBefore;
    return sign + QByteArray::number(first) + ',' + QByteArray::number(count);
}

QByteArray hunk(const Ops& ops, int from, int to, int aBefore, int bBefore)
{
    QByteArray body;
    int aCount = 0;
    int bCount = 0;
    for (int k = from; k < to; ++k) {
        const Op& op = ops[k];
        aCount += op.kind != '+';
        bCount += op.kind != '-';
        body += op.kind;
        body.append(op.line->text, op.line->size);
        body += '\n';
        if (!op.line->lineFeed)
            body += "\\ No newline at end of file\n";
    }
    return "@@ " + range('-', aBefore, aCount) + ' ' + range('+', bBefore, bCount) + " @@\n"
        + body;
}

// The end of the hunk that holds the change at `change`: past the last change that is within
// twice the context of the one before it, and its context.
int hunkEnd(const Ops& ops, int change)
{
    int last = change;
    for (int k = change + 1; k < ops.size() && k <= last + 2 * CONTEXT; ++k) {
        if (ops[k].kind != ' ')
            last = k;
    }
    return std::min(int(ops.size()), last + 1 + CONTEXT);
}

} // namespace

QByteArray unifiedDiff(const QByteArray& before, const QByteArray& after, const QString& name)
{
    const Lines a = splitLines(before);
    const Lines b = splitLines(after);
    const Ops ops = diffLines(a, b);
    QByteArray hunks;
    int aBefore = 0; // the lines of `before` and `after` ahead of op `done`
    int bBefore = 0;
    int done = 0;
    const auto advance = [&](int to) {
        for (; done < to; ++done) {
            aBefore += ops[done].kind != '+';
            bBefore += ops[done].kind != '-';
        }
    };
    for (int k = 0; k < ops.size(); ++k) {
        if (ops[k].kind == ' ' || k < done)
            continue;
        advance(std::max(done, k - CONTEXT));
        const int end = hunkEnd(ops, k);
        hunks += hunk(ops, done, end, aBefore, bBefore);
        advance(end);
    }
    if (hunks.isEmpty())
        return hunks;
    const QByteArray file = name.toLocal8Bit();
    return "--- " + file + "\n+++ " + file + '\n' + hunks;
}
