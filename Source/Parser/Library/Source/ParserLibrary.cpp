#include "ParserLibrary.h"

CParserLibrary::CParserLibrary() = default;

QString CParserLibrary::version()
{
    return QStringLiteral(OVPARSER_VERSION_STRING);
}

int fnParserLibrary()
{
    return OVPARSER_VERSION_NUMBER;
}
