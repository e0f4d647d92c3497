/// @file
/// Conveniences for saving: a save that loses nothing, and default namespaces that can be read
/// back.
///
/// **Role:** see convenience.h. Threads: as for CXMLDocument::Save; programs and threads that save
/// to one file with XMLSaveSafely at the same time leave the document of one of them, whole.
#ifndef NORVASK_CONVENIENCE_SAVING_H
#define NORVASK_CONVENIENCE_SAVING_H

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "norvask/convenience_document.h"
#include "norvask/convenience_file.h"
#include "norvask/convenience_tree.h"
#include "norvask/document.h"
#include "norvask/exception.h"

namespace norvask {

/// @name Default namespaces
/// @{

/// Gives the default namespace declarations that a load with keepPrefixes has kept as attributes
/// "xmlns:" the name "xmlns", for this element and everything below it, and answers how many there
/// were. Before that no parser reads the saved document back (manager.h); after it the document
/// loads again, and saved once more it is the same. Calling it twice does nothing more. A
/// declaration xmlns="", which takes the default namespace back, is not kept by a load (attributes
/// with an empty value are not): where a document has one, the elements below it fall into the
/// namespace around it.
///
/// Deliberate: not part of a load or a save, since it changes the tree: from then on the
/// declaration is found as "xmlns". Where an element has an attribute "xmlns" already, the program
/// has set that, since no load does; it stays, and the declaration that was kept is removed. NULL
/// answers 0. Throws std::bad_alloc: then some have their new name, and it can be called again.
inline std::size_t XMLNameDefaultNamespaces(CXMLNode* node) {
    static constexpr const char* KEPT_NAME = "xmlns:";
    static constexpr const char* READ_NAME = "xmlns";
    std::size_t found = 0;
    convenience_inside::ForEachElement(node, [&found](CXMLNode* element) {
        bool hasKept = false;
        bool hasRead = false;
        for (CXMLAttribut** a = element->GetAttributes(); *a != nullptr; ++a) {
            hasKept = hasKept || std::strcmp((*a)->GetName(), KEPT_NAME) == 0;
            hasRead = hasRead || std::strcmp((*a)->GetName(), READ_NAME) == 0;
        }
        for (CXMLAttribut* a : hasKept ? XMLAttributes(element) : CXMLAttributRange()) {
            if (std::strcmp(a->GetName(), KEPT_NAME) != 0) continue;
            ++found;
            if (hasRead) {
                element->SetAttribute(KEPT_NAME, nullptr);  // the first one left, which is this one
            } else {
                a->SetName(READ_NAME);
                hasRead = true;
            }
        }
    });
    return found;
}
inline std::size_t XMLNameDefaultNamespaces(CXMLDocument& document) {
    return XMLNameDefaultNamespaces(document.GetRoot());
}
/// @}

/// @name Saving
/// @{

#if defined(__cpp_exceptions)

// Internal.
namespace convenience_inside {

// With the reason of the system, if there is one.
[[noreturn]] inline void ThrowNotSaved(const char* fileName, int error) {
    CXMLException told(1, 4U, fileName);
    std::vector<SXMLProblem> problems;
    if (error != 0) {
        problems.emplace_back();
        problems.back().file = fileName == nullptr ? "" : fileName;
        problems.back().text = std::generic_category().message(error);
    }
    throw CXMLError(told.GetID(), told.GetMessage(), std::move(problems));
}

}  // namespace convenience_inside

/// Saves to a file such that afterwards it holds either the whole document or what it held before.
///
/// The document is written to a new file beside `fileName`, every step is checked (writing, handing
/// it to the device, closing), and only then the new file takes the place of the old one, in one
/// step of the file system. If anything fails, CXMLError (1, "Error saving '%s'.") is thrown with
/// the name as it was given, and the reason of the system as its problem; the old file has not been
/// touched, and nothing else is left in its folder. What CXMLDocument::Save to a stream throws
/// passes through in the same state: an invalid name (3), a document without a root (1, "invalid
/// parameter"; deliberate: unlike Save to a file, which then does nothing). NULL is a name that
/// cannot be saved to.
///
/// What stays of a file that was there:
///
/// - A symbolic link stays a link, and the file that it leads to is replaced, or made.
/// - The permissions; the owner and the group where the system allows it, which it mostly does to
///   the administrator only. Where the group cannot be kept, its permissions are cut down to those
///   that everybody has. A new file gets what the umask leaves.
/// - A file that may not be written is not replaced.
///
/// What does not: other hard links keep the old content, and access control lists and extended
/// attributes are gone.
///
/// A name that leads to a device or a pipe is written to directly, since there is nothing that
/// could be kept; every step is checked here too. So is /dev/stdout, but not when standard output
/// is a file: others have that open and would go on in the old one, so it is refused like a file
/// that may not be written. CXMLDocument::Save(std::cout, ...) writes there.
///
/// It takes longer than Save, since it waits for the device: milliseconds on most. It needs the
/// right to make files in the folder, and room for both files. A program that is killed, or a
/// system that halts, in the middle leaves the old file and a file ".norvask-..." beside it.
inline void XMLSaveSafely(CXMLDocument& document, const char* fileName, bool format = false) {
    convenience_inside::CSafeFile file;
    errno = 0;
    if (!file.Open(fileName)) convenience_inside::ThrowNotSaved(fileName, errno);
    {
        std::ostream out(&file.Buffer());
        convenience_inside::AsErrors([&] { document.Save(out, format); });
    }
    if (!file.Finish()) convenience_inside::ThrowNotSaved(fileName, errno);
}
inline void XMLSaveSafely(CXMLDocument& document, const std::string& fileName,
                          bool format = false) {
    XMLSaveSafely(document, fileName.c_str(), format);
}

#endif
/// @}

}  // namespace norvask

#endif
