/// @file
/// Conveniences for whole documents: ownership in the type, loading with named options,
/// std::string.
///
/// **Role:** see convenience.h. What is not said here is as in manager.h and document.h, the
/// failures too.
///
/// **Threads:** as for the operations underneath; nothing here keeps anything between two calls.
#ifndef NORVASK_CONVENIENCE_DOCUMENT_H
#define NORVASK_CONVENIENCE_DOCUMENT_H

#include <climits>
#include <cstddef>
#include <ios>
#include <memory>
#include <new>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>

#include "norvask/document.h"
#include "norvask/manager.h"
#include "norvask/sax_handler.h"

namespace norvask {

/// Ends a document with its own Delete, which is the only way.
struct SXMLDelete {
    /// Calls CXMLDocument::Delete.
    void operator()(CXMLDocument* document) const { document->Delete(); }
};

/// A document that ends with its variable. Its nodes end with it, so keep it in a variable as long
/// as you use them: in `for (... : XMLChildren(XMLLoadFile("a.xml")->GetRoot()))` it is gone before
/// the loop begins.
using CXMLDocumentPtr = std::unique_ptr<CXMLDocument, SXMLDelete>;

/// How to load: the parameters of CXMLManager::LoadDocument by name, see there. Set the fields, or
/// chain the operations, each of which answers changed options:
///
///     XMLLoadFile("a.xml", SXMLLoadOptions().KeepPrefixes().ValidateBySchema("a.xsd"))
struct SXMLLoadOptions {
    /// As the parameter of CXMLManager::LoadDocument.
    bool validate = false;
    bool doSchema = false;
    std::string schemaLocation = {};  ///< Empty: none.
    bool schemaHasNamespace = false;
    bool keepPrefixes = false;

    /// Names with their prefix, and namespace declarations as attributes.
    [[nodiscard]] SXMLLoadOptions KeepPrefixes() const {
        SXMLLoadOptions changed(*this);
        changed.keepPrefixes = true;
        return changed;
    }

    /// By the DTD that the document names.
    [[nodiscard]] SXMLLoadOptions Validate() const {
        SXMLLoadOptions changed(*this);
        changed.validate = true;
        return changed;
    }

    /// By XML Schema: by those that the document names, or by this one as well. For elements in a
    /// namespace `hasNamespace` is true and `location` a list of pairs, "urn:books books.xsd".
    [[nodiscard]] SXMLLoadOptions ValidateBySchema(const std::string& location = std::string(),
                                                   bool hasNamespace = false) const {
        SXMLLoadOptions changed(*this);
        changed.validate = true;
        changed.doSchema = true;
        changed.schemaLocation = location;
        changed.schemaHasNamespace = hasNamespace;
        return changed;
    }
    /// NULL is none.
    [[nodiscard]] SXMLLoadOptions ValidateBySchema(const char* location,
                                                   bool hasNamespace = false) const {
        return ValidateBySchema(std::string(location == nullptr ? "" : location), hasNamespace);
    }
};

// Internal.
namespace convenience_inside {

// The manager answers NULL for a document without memory, which a caller of an owning pointer would
// have to look for; here it is std::bad_alloc like everywhere else.
inline CXMLDocumentPtr Own(CXMLDocument* document) {
#if defined(__cpp_exceptions)
    if (document == nullptr) throw std::bad_alloc();
#endif
    return CXMLDocumentPtr(document);
}

inline const char* SchemaLocation(const SXMLLoadOptions& options) {
    return options.schemaLocation.empty() ? nullptr : options.schemaLocation.c_str();
}

// A text as the loads take it, which only read it. They count its bytes in an unsigned int and
// refuse an empty one; a longer one than they can count is handed over as that.
struct SBytes {
    explicit SBytes(std::string_view text) {
        if (text.size() <= UINT_MAX) {
            data = reinterpret_cast<unsigned char*>(const_cast<char*>(text.data()));
            length = static_cast<unsigned int>(text.size());
        }
    }
    unsigned char* data = nullptr;
    unsigned int length = 0;
};

// Appends to a string. Growing it may throw.
class CStringBuffer : public std::streambuf {
public:
    explicit CStringBuffer(std::string& target) : m_Target(target) {}

protected:
    int_type overflow(int_type c) override {
        if (!traits_type::eq_int_type(c, traits_type::eof())) {
            m_Target.push_back(traits_type::to_char_type(c));
        }
        return traits_type::not_eof(c);
    }
    std::streamsize xsputn(const char* bytes, std::streamsize count) override {
        m_Target.append(bytes, static_cast<std::size_t>(count));
        return count;
    }

private:
    std::string& m_Target;
};

}  // namespace convenience_inside

/// @name Documents that belong to the caller
/// The answer is never NULL (but see convenience.h for programs
/// without exceptions): without memory std::bad_alloc is thrown.
/// @{

/// An empty document; one with a root; one with a root and a DTD reference
/// (CXMLDocument::SetDTDRef). A NULL or invalid name throws CXMLException (3, "Invalid XML name:
/// '%s'.").
inline CXMLDocumentPtr XMLNewDocument() {
    return convenience_inside::Own(CXMLManager::GetInstance().CreateDocument(nullptr, nullptr));
}
inline CXMLDocumentPtr XMLNewDocument(const char* rootName, const char* dtdName = nullptr,
                                      const char* dtdPath = nullptr) {
    CXMLDocumentPtr document =
        convenience_inside::Own(CXMLManager::GetInstance().CreateDocument(dtdName, dtdPath));
    if (document != nullptr) document->CreateRoot(rootName);
    return document;
}

/// CXMLDocument::Clone.
inline CXMLDocumentPtr XMLClone(CXMLDocument& document) {
    return convenience_inside::Own(document.Clone());
}

/// Loads a file, or what the parser's URLs name.
inline CXMLDocumentPtr XMLLoadFile(const char* fileName,
                                   const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return convenience_inside::Own(CXMLManager::GetInstance().LoadDocument(
        fileName, options.validate, options.doSchema, convenience_inside::SchemaLocation(options),
        options.schemaHasNamespace, options.keepPrefixes));
}
inline CXMLDocumentPtr XMLLoadFile(const std::string& fileName,
                                   const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return XMLLoadFile(fileName.c_str(), options);
}

/// Loads the document that `text` holds, in the encoding that its declaration names, else UTF-8.
/// The text is not copied and only read. An empty one, and one of 4 GiB or more, throws
/// CXMLException (1, "invalid parameter"): such a document can be loaded from a file only.
inline CXMLDocumentPtr XMLLoadText(std::string_view text,
                                   const SXMLLoadOptions& options = SXMLLoadOptions()) {
    const convenience_inside::SBytes bytes(text);
    return convenience_inside::Own(CXMLManager::GetInstance().LoadDocument(
        bytes.data, bytes.length, options.validate, options.doSchema,
        convenience_inside::SchemaLocation(options), options.schemaHasNamespace,
        options.keepPrefixes));
}
/// The same for a terminated string; NULL is an empty one.
inline CXMLDocumentPtr XMLLoadText(const char* text,
                                   const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return XMLLoadText(text == nullptr ? std::string_view() : std::string_view(text), options);
}
/// @}

/// @name Documents as callbacks to `handler`
/// keepPrefixes has no effect.
/// @{

/// Loads a file as callbacks to `handler`.
inline void XMLLoadFile(const char* fileName, CXMLSaxHandler& handler,
                        const SXMLLoadOptions& options = SXMLLoadOptions()) {
    CXMLManager::GetInstance().LoadDocument(fileName, &handler, options.validate, options.doSchema,
                                            convenience_inside::SchemaLocation(options),
                                            options.schemaHasNamespace, options.keepPrefixes);
}
inline void XMLLoadFile(const std::string& fileName, CXMLSaxHandler& handler,
                        const SXMLLoadOptions& options = SXMLLoadOptions()) {
    XMLLoadFile(fileName.c_str(), handler, options);
}

/// The text must stay as it is until the load has ended.
inline void XMLLoadText(std::string_view text, CXMLSaxHandler& handler,
                        const SXMLLoadOptions& options = SXMLLoadOptions()) {
    const convenience_inside::SBytes bytes(text);
    CXMLManager::GetInstance().LoadDocument(bytes.data, bytes.length, &handler, options.validate,
                                            options.doSchema,
                                            convenience_inside::SchemaLocation(options),
                                            options.schemaHasNamespace, options.keepPrefixes);
}
inline void XMLLoadText(const char* text, CXMLSaxHandler& handler,
                        const SXMLLoadOptions& options = SXMLLoadOptions()) {
    XMLLoadText(text == nullptr ? std::string_view() : std::string_view(text), handler, options);
}
/// @}

/// @name A document as text
/// @{

/// What CXMLDocument::Save writes to a stream, with its failures. Deliberate: not through a
/// std::ostringstream, which answers a part of the document when memory runs out; here that throws
/// std::bad_alloc.
inline std::string XMLToString(CXMLDocument& document, bool format = false) {
    std::string text;
    convenience_inside::CStringBuffer buffer(text);
    std::ostream out(&buffer);
    out.exceptions(std::ios::badbit | std::ios::failbit);
    document.Save(out, format);
    return text;
}
/// @}

}  // namespace norvask

#endif
