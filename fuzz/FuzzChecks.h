#ifndef FUZZCHECKS_H
#define FUZZCHECKS_H

// The properties that the fuzz targets check, kept apart from libFuzzer so that the
// regression test replays every saved input through exactly the same code.
//
// Each check runs the library on one input and returns an empty string when every property
// holds, else a one-line description of the first violation. A crash or a sanitizer report
// inside the library is not caught here; it ends the program, which is what a fuzzer needs.

#include <cstddef>
#include <cstdint>
#include <string>

namespace OvFuzz {

// The scanner: the input, NUL-terminated, walked with getNextSection() and with readLine().
std::string checkScanner(const uint8_t* data, size_t size);

// The ClickInfo document: the input loaded as the bytes of a file (loadClickInfoBytes()) and
// saved. A load without warnings must save back exactly the input. (A load with warnings
// gives no promise: a text line written with a "#" in front, a trimmed line that turns into a
// section header, a key cut at a shifted place may all read back otherwise.)
std::string checkClickInfo(const uint8_t* data, size_t size);

// The in-place editor (CPLFileEditor on the bytes of a file): the first byte of the input
// picks set, add, remove or add-a-section, the second the section and key, the next line is
// the value, the rest the file. An edit that succeeds changes only its line (add a section
// aside), the new text loads, the key reads back the new value (or is gone), and every other
// line reads as before; a refused edit changes no byte.
std::string checkEditor(const uint8_t* data, size_t size);

// obtainValueFromClickInfoFile(): the first line of the input (at most 64 bytes) is the key,
// the rest the buffer searched.
std::string checkObtainValue(const uint8_t* data, size_t size);

// Preference key lists: the first line of the input is the list of key names, separated by
// ";", the rest the text loaded with CPLPreferenceKeyList::loadData(); the loaded keys save
// to text that loads back to the same keys, and the list saves as one section.
std::string checkPreferenceKeys(const uint8_t* data, size_t size);

// The settings file wrapper: the input loaded as a settings text, then listed and searched by
// menu name with and without section names as menu names; every listed menu name is found
// again, and generated section and menu names are well formed and new.
std::string checkSettings(const uint8_t* data, size_t size);
// The spectral-analysis document: the input read with loadSpectralXMLData(). A document read
// whole is written and read again, three times; each write must be well-formed for
// QXmlStreamReader and read again, and the last two writes must be the same bytes (values
// read back at the precision written; tabs and line breaks in texts become blanks once).
std::string checkSpectral(const uint8_t* data, size_t size);

// The instrument configuration: the input split at lines "%%" into a base "CameraInfo.txt"
// and up to three extension files ("e1.cfg" to "e3.cfg"; one whose text begins with "+" gets
// a valid "Extension Info" section for a "KORA 200" in front of the rest), written to a
// scratch folder and loaded with CPLCameraInfo::load(), and the base file loaded alone. When
// the base file alone loads and its first "*** " begins a line of a text that has a main
// section header (or it has no "*** "), the load with extensions succeeds too and holds every
// key of every section of the base file alone.
std::string checkCamera(const uint8_t* data, size_t size);

// Drops the library's log messages (malformed input is logged), which would otherwise flood
// a fuzzing run.
void silenceMessages();

// One input of a fuzz target: runs `check` and, when a property fails, prints the target's
// name and the failure to stderr and aborts, which is how libFuzzer learns of a finding.
using Check = std::string (*)(const uint8_t* data, size_t size);
int runTarget(const char* target, Check check, const uint8_t* data, size_t size);

// A background library: the input written as "BkgSummary.txt" and as "SLindex.txt" and
// loaded with CPLBkgSummaryInfo::load(). A load without warnings gives back the bytes read;
// the background found for a fixed luminescent and a fixed fluorescent acquisition fits them
// and no listed entry fits with a shorter exposure, and when none is found none fits and a
// reason is given; an entry added reads back as given and can be removed; the library saved
// and loaded again lists the same entries and no index disagreement.
std::string checkBkg(const uint8_t* data, size_t size);

// The optical-property preferences: the first byte picks a setting and a reconstruction, the
// second a value, the rest is the file. The file is loaded (CPLOptPropInfo::loadBytes()) and
// every getter queried; a load without warnings saves back the bytes read. The value is set:
// it succeeds or is refused with the bytes unchanged; on success it reads back, every line of
// the file but the edited one (or the added ones, or blank lines a new section replaces) is
// unchanged, and a save and reload of the
// file gives the same bytes and the value.
std::string checkOptProp(const uint8_t* data, size_t size);

// The analysis results: the first byte picks a group of analysis keys and a value, the rest is
// the file, loaded as CPLAnalyzedClickInfo. Every getter is queried; a load without warnings
// saves back the bytes read. The group is set and its value reads back; after a load without
// warnings, the text the document then writes loads back to the same text.
std::string checkAnalysis(const uint8_t* data, size_t size);

// The sequence document: the input loaded as a "SequenceInfo.txt" and queried (click numbers,
// the position of each, the ID, the user input); a load without warnings saves back the bytes
// read. With a sequence section, a click is added, moved to the front and another removed,
// each with its status, and the click numbers must then be the expected list; the document is
// saved and reloaded (unless a line before the first section is itself a section header,
// which the loader warns is written twice and reads first), and the reloaded one holds the
// same ID and click numbers, its sequence section saves the same text, and, for an input
// without load warnings, it holds the same user input and saves the same bytes.
std::string checkSequence(const uint8_t* data, size_t size);

} // namespace OvFuzz

#endif // FUZZCHECKS_H
