/// @file
/// The conveniences: what programs around this library tend to write for themselves.
///
/// Everything here is inline and made of the public operations of the other headers. Nothing of it
/// is in the shared library, and none of it changes what the classes do: use as much of it as you
/// like, beside the operations themselves. What they throw is a CXMLError (error.h), which is a
/// CXMLException and a std::exception.
///
///     CXMLDocumentPtr list = XMLLoadFile("list.xml", SXMLLoadOptions().KeepPrefixes());
///     for (CXMLNode* price : XMLQuery(*list, "list/book/price")) {
///         price->SetAttribute("currency", "EUR");
///     }
///     XMLNameDefaultNamespaces(*list);
///     XMLSaveSafely(*list, "list.xml", true);
///
///     convenience_document.h   documents that end by themselves, load options, std::string
///     convenience_tree.h       children, attributes and query results in a for loop; checked casts
///     convenience_saving.h     a save that loses nothing; kept default namespaces made readable
///     convenience_callbacks.h  callbacks as lambdas, attributes by name, elements with one value
///
/// Compiled without RTTI everything is there. Compiled without exceptions XMLSaveSafely is missing,
/// since it has nothing else to report a failure with and to clean up by, and a document for which
/// there is no memory is NULL. The library itself throws all the same, so such a program ends at
/// its first failure. Do not put files compiled with and without exceptions into one program.
#ifndef NORVASK_CONVENIENCE_H
#define NORVASK_CONVENIENCE_H

#include "norvask/convenience_callbacks.h"
#include "norvask/convenience_document.h"
#include "norvask/convenience_saving.h"
#include "norvask/convenience_tree.h"

#endif
