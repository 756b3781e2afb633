#ifndef OVPARSER_GLOBAL_H
#define OVPARSER_GLOBAL_H

#include <QtCore/qglobal.h>

// OVPARSER_EXPORT marks the classes, functions and constants that the shared library
// exports; everything else is built with hidden visibility.
#if defined(OVPARSER_LIBRARY)
#define OVPARSER_EXPORT Q_DECL_EXPORT
#else
#define OVPARSER_EXPORT Q_DECL_IMPORT
#endif

#endif // OVPARSER_GLOBAL_H
