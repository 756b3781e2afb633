#ifndef PARSERLIBRARY_H
#define PARSERLIBRARY_H

#include "ovparser_global.h"
#include "ovparser_version.h"

#include <QString>

// Marks the library: a program can check that it links the ovparser it was built against.
class OVPARSER_EXPORT CParserLibrary
{
public:
    CParserLibrary();
    // The version of the library loaded, "major.minor.patch".
    static QString version();
};

// The version number of the library loaded (OVPARSER_VERSION_NUMBER of its build).
OVPARSER_EXPORT int fnParserLibrary();

#endif // PARSERLIBRARY_H
