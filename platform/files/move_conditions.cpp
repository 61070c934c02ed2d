#include "platform/files/move_conditions.h"

namespace gruk {

bool operator==(const ItemIdentity& a, const ItemIdentity& b)
{
    return a.deviceID == b.deviceID && a.inode == b.inode && a.type == b.type
           && (!a.created || !b.created || a.created == b.created);
}

}  // namespace gruk
