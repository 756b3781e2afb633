#ifndef PLSECTIONSCANNER_H
#define PLSECTIONSCANNER_H

#include "ovparser_global.h"

#include <QString>

class CPLSection;

// Scanning of sectioned text held in a NUL-terminated byte buffer.
//
// A buffer is cut into lines at line feeds; the line feed (and any carriage return before
// it) belongs to the line, and the last line may lack one. A header line is a line whose
// first token, after blanks and tabs, begins with "***". A section is a header line and the
// lines that follow it up to the next header line or the end of the buffer; lines before the
// first header belong to no section.
//
// The caller owns the read position (a byte offset into the buffer) and passes its address;
// each call advances it. Strings returned by readLine() and getNextSection() are fresh
// malloc() blocks, NUL-terminated, which the caller releases with free(); a null result means
// there is nothing more and owns nothing.
//
// Walks are linear. The buffer's length is measured once when a walk starts and reused
// while the walk goes on, that is while each call continues at the position the previous
// call on the same buffer left (per thread). So the buffer must not change during a walk; a
// call at any other position measures the buffer again. A negative position reads nothing.
// The functions keep no other state and are safe to use from several threads on separate
// positions.

// Returns the line that starts at *position, line end included, and moves *position past it.
// After the last line of a buffer that does not end with a line feed the position stands at
// the length plus one. Returns null, leaving the position unchanged, for a null buffer or a
// position at or past the end. With a null position the first line is returned.
OVPARSER_EXPORT char* readLine(const char* buffer, long* position);

// Returns the next section at or after *position: from its header line up to (not
// including) the next header line or the end of the buffer; *position is left on that next
// header (or at the end), ready for the following call. Text ahead of the first header is
// passed over. Returns null when no further section exists: for a null buffer or a position
// at or past the end (position unchanged), or when no header follows (position moved to the
// end). With a null position the scan starts at offset 0.
OVPARSER_EXPORT char* getNextSection(const char* buffer, long* position);

// Adds one key/value pair to a section from a body line: the key is the text before the
// first colon, the value the text after it up to the end of the line, both taken byte for
// byte (no trimming) and handed to CPLSection::addKeyValue(). The line end that readLine()
// leaves on a line (LF, or CR LF) is not part of the value. Callers pass only lines that hold
// a colon; a line without one, or with text that cannot stand in a section (a line break
// inside it, a "#" in the key or white space around it: CPLSection::breaksFile()), adds
// nothing and is logged. A null line or section is a programming error and stops the program.
OVPARSER_EXPORT void ParseSectionField(const char* line, CPLSection* section);

// Returns the first section of a text: from the first "*** " (three asterisks and a blank,
// anywhere in the text) up to just before the next "*** ", or to the end of the text. Unlike
// getNextSection() this looks at no line starts and needs the blank after the asterisks.
// Returns an empty string when the text holds no "*** ".
OVPARSER_EXPORT QString getSectionBuffer(const QString& text);

#endif // PLSECTIONSCANNER_H
