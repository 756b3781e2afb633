#ifndef PLKEYHASH_P_H
#define PLKEYHASH_P_H

// Internal header, not installed: case-insensitive comparison and hashing of keys.

#include <QStringView>

namespace PLKeyHash {

// Whether two texts are equal in lower case (QString::toLower()). Latin-1 text is compared
// without building its lower-case form.
bool equal(QStringView a, QStringView b);

// A hash that is the same for texts equal in lower case.
uint hash(QStringView text, uint seed = 0);

} // namespace PLKeyHash

#endif // PLKEYHASH_P_H
