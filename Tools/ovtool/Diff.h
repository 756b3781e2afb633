#ifndef OVTOOL_DIFF_H
#define OVTOOL_DIFF_H

// The unified diff that --dry-run prints: what an edit would change in a file's bytes.

#include <QByteArray>
#include <QString>

// The changes from `before` to `after` as a unified diff: "--- NAME" and "+++ NAME", then
// hunks "@@ -a,b +c,d @@" with three lines of context. Lines are the bytes between line
// feeds, compared as bytes: a CR before a line feed, or a lone CR, is part of the line and is
// printed as it stands; a last line without a line feed is followed by
// "\ No newline at end of file". Empty when the bytes are the same.
//
// The lines that both texts begin and end with are set aside first, and the lines between
// are matched by their longest common subsequence; when that region is too large to match
// cheaply (a rewrite that changes every line ending, say), it is shown as removed and added
// as a whole.
QByteArray unifiedDiff(const QByteArray& before, const QByteArray& after, const QString& name);

#endif // OVTOOL_DIFF_H
