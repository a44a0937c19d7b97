// Test seam of the XML DOM stand-in: not platform API. Each flag makes the
// next call of one kind fail with the given status, once, on any document or
// node, and leaves error information on the thread as a real failure does.
#pragma once

#include "OhmPlatformExport.h"
#include "com/Guid.h"
#include "com/HResult.h"

OHM_PLATFORM_API_BEGIN

namespace com_testing {

// IXMLDOMDocument::load returns `hr` without reading the file; the document is emptied.
void failNextLoad(HRESULT hr);
// IXMLDOMDocument::save returns `hr` without touching the file.
void failNextSave(HRESULT hr);
// IXMLDOMNode::selectNodes returns `hr` and no list (or
// IXMLDOMChildLookup::findChildElement `hr` and no element).
void failNextSelectNodes(HRESULT hr);
// A caller's QueryInterface for `iid` on a DOM object, after `passFirst`
// such queries that succeed, returns `hr` and null. findChildElement counts
// as such a query for IXMLDOMElement on each child it looks at.
void failNextQueryInterface(REFIID iid, HRESULT hr, int passFirst = 0);
// Clears every pending failure.
void resetDomFailures();
// DOM objects (documents, nodes, lists) alive now.
long liveDomObjects();

}  // namespace com_testing

OHM_PLATFORM_API_END
