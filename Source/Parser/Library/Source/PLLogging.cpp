#include "PLLogging_p.h"

#include <QLocale>

Q_LOGGING_CATEGORY(lcOvLoad, "ovparser.load", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvFile, "ovparser.file", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvSave, "ovparser.save", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvXml, "ovparser.xml", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvMemory, "ovparser.memory", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvCamera, "ovparser.camera", QtInfoMsg)

namespace {

// Each category registers itself, and Qt reads its logging rules and makes its default
// locale, on first use: done when the library is loaded, while memory is to be had, rather
// than in the middle of an allocation failure. An exception in Qt's own first-use set-up can
// leave its lock held, and the next message of the program then waits for ever.
const bool g_prepared = [] {
    lcOvLoad();
    lcOvFile();
    lcOvSave();
    lcOvXml();
    lcOvMemory();
    lcOvCamera();
    QLocale();
    return true;
}();

} // namespace

namespace PLLog {

void allocationFailure(const char* file, int line, const char* function)
{
    // Formatting the message allocates too; when even that fails, the status alone is left.
    try {
        QMessageLogger(file, line, function, lcOvMemory().categoryName())
            .critical("Unable To Allocate Memory for Operation ");
    } catch (const std::bad_alloc&) {
    }
}

} // namespace PLLog
