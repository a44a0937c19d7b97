// The language resources of OhmUtils: the texts of the registry wrapper's
// message boxes.
#include "ResourceVersion.h"

extern "C" const ResourceEntry OhmResourceDirectory[] = {
    // Title of the registry wrapper's message boxes.
    StringResource(112, u"OhmUtils Registry"),
    // Shown when a key's sub keys or values can't be listed.
    StringResource(113, u"The registry key could not be queried for its sub keys and values."),
    // Appended to the system text when a key to delete isn't there.
    StringResource(114, u"The registry key to delete does not exist."),
    kVersionResource,
    {0, 0, nullptr, 0},
};
