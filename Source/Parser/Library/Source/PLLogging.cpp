#include "PLLogging_p.h"

Q_LOGGING_CATEGORY(lcOvLoad, "ovparser.load", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvFile, "ovparser.file", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvSave, "ovparser.save", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvXml, "ovparser.xml", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvMemory, "ovparser.memory", QtInfoMsg)
Q_LOGGING_CATEGORY(lcOvCamera, "ovparser.camera", QtInfoMsg)

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
