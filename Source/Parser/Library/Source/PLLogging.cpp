#include "PLLogging_p.h"

Q_LOGGING_CATEGORY(lcOvLoad, "ovparser.load")
Q_LOGGING_CATEGORY(lcOvFile, "ovparser.file")
Q_LOGGING_CATEGORY(lcOvSave, "ovparser.save")
Q_LOGGING_CATEGORY(lcOvXml, "ovparser.xml")
Q_LOGGING_CATEGORY(lcOvMemory, "ovparser.memory")

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
