#ifndef PLSTATUS_H
#define PLSTATUS_H

// Status codes shared by every operation of the library. Operations return an int status,
// PL_SUCCESS (0) on success, and write their results through pointer parameters only on
// success. The numbers are part of the interface: callers and other programs compare them.

constexpr int PL_SUCCESS = 0;
// A section header line is malformed: no "***" prefix, no colon after it, or a "#" at or
// before the colon.
constexpr int PL_MALFORMED_SECTION_HEADER = 5;
// A file cannot be opened (or read).
constexpr int PL_FILE_OPEN_FAILED = 11;
// A required result pointer or argument is null, or a required key is null or empty.
constexpr int PL_NULL_ARGUMENT = 16;
// A key or name that must not be empty is empty.
constexpr int PL_EMPTY_KEY = 19;
// A key or section is not present.
constexpr int PL_KEY_NOT_FOUND = 24;
// An argument is invalid, or a write to a file was short.
constexpr int PL_INVALID_ARGUMENT = 31;
constexpr int PL_SHORT_WRITE = PL_INVALID_ARGUMENT;
// Nothing to work on: an empty section key, an empty click number, no section to use.
constexpr int PL_NOTHING_TO_WORK_ON = 33;
// An index or value is out of range.
constexpr int PL_OUT_OF_RANGE = 48;
// The section named in a typed get or set is not present in the document.
constexpr int PL_SECTION_NOT_PRESENT = 49;
// A folder that a document is to read does not exist.
constexpr int PL_FOLDER_MISSING = 62;
// An XML document is not well-formed.
constexpr int PL_MALFORMED_XML = 50;

#endif // PLSTATUS_H
