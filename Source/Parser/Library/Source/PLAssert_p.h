#ifndef PLASSERT_P_H
#define PLASSERT_P_H

// Internal header, not installed.

#include <QtCore/qglobal.h>
#include <QtCore/qlogging.h>

// Stops the program on a programming error (a broken precondition that no input can cause),
// naming the failed condition, the function and the source file. Unlike Q_ASSERT it is active
// in every build type: a caller that breaks a contract must not go on with corrupt state.
#define PL_ASSERT(condition)                                                                       \
    do {                                                                                           \
        if (Q_UNLIKELY(!(condition)))                                                              \
            qFatal("ASSERT: \"%s\" in %s (%s:%d)", #condition, Q_FUNC_INFO, __FILE__, __LINE__);   \
    } while (false)

#endif // PLASSERT_P_H
