#ifndef PLLOGGING_P_H
#define PLLOGGING_P_H

// Internal header, not installed: the library's logging categories, the report of an
// allocation failure, and the guard that turns one into a status.
//
// Every message of the library goes to a category of its own, so that an application can
// silence the library (QT_LOGGING_RULES="ovparser.*=false") without silencing itself. A
// message about a file names the file and, where there is one, the line: "FILE:LINE: what".
// Debug messages (how a file was written, say) are off unless a rule turns them on
// ("ovparser.save.debug=true"); information, warnings and critical messages are on.

#include "PLStatus.h"

#include <QLoggingCategory>

#include <new>

// What a load found in a file: malformed headers, and what saving would not write back.
Q_DECLARE_LOGGING_CATEGORY(lcOvLoad)
// Reading files: refused files (too large, not regular) and failed reads.
Q_DECLARE_LOGGING_CATEGORY(lcOvFile)
// Saving and editing files: the way a file is written, locks, failures.
Q_DECLARE_LOGGING_CATEGORY(lcOvSave)
// XML reading and writing.
Q_DECLARE_LOGGING_CATEGORY(lcOvXml)
// Allocation failures (critical).
Q_DECLARE_LOGGING_CATEGORY(lcOvMemory)
// The checks of an instrument configuration and its accessory states.
Q_DECLARE_LOGGING_CATEGORY(lcOvCamera)

namespace PLLog {

// Logs the critical message "Unable To Allocate Memory for Operation " in lcOvMemory with
// the source file, line and function of the operation.
void allocationFailure(const char* file, int line, const char* function);

// Runs `operation`, which returns a status, and turns an allocation failure inside it (a
// std::bad_alloc from Qt's containers or from new) into PL_OUT_OF_MEMORY with the critical
// message. For the public entry points of loading and saving: nothing thrown leaves the
// library.
template<typename Operation>
int guardAllocation(const char* file, int line, const char* function, Operation&& operation)
{
    try {
        return operation();
    } catch (const std::bad_alloc&) {
        allocationFailure(file, line, function);
        return PL_OUT_OF_MEMORY;
    }
}

} // namespace PLLog

// guardAllocation() for the statement block that follows, with the place of the caller:
//     return PL_GUARDED({ ...; return status; });
#define PL_GUARDED(...) PLLog::guardAllocation(__FILE__, __LINE__, Q_FUNC_INFO, [&]() -> int __VA_ARGS__)

#endif // PLLOGGING_P_H
