#ifndef PLSTATUS_P_H
#define PLSTATUS_P_H

// Internal header, not installed: the record behind getLastSystemError().

namespace PLStatusPrivate {

// Forgets the reason of an earlier failure; called when a file operation starts.
void clearLastSystemError();
// Records the reason for an operation the system refused with `error` (an errno value).
void setLastSystemError(int error);

} // namespace PLStatusPrivate

#endif // PLSTATUS_P_H
