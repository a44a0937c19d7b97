// The audit dialogs' resources: the caption of their details button, with
// blanks around it that the dialogs trim.
#include "ResourceVersion.h"

extern "C" const ResourceEntry OhmResourceDirectory[] = {
    StringResource(139, u" Show Details "),
    kVersionResource,
    {0, 0, nullptr, 0},
};
