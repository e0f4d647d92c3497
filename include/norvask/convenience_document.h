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

#include <cerrno>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <ios>
#include <istream>
#include <memory>
#include <new>
#include <ostream>
#include <streambuf>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

#include "norvask/document.h"
#include "norvask/load.h"
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

/// How to load. Set the fields, or chain the operations, each of which returns changed options:
///
///     XMLLoadFile("a.xml", SXMLLoadOptions().KeepPrefixes().ValidateBySchema("a.xsd"))
///     XMLLoadText(upload, SXMLLoadOptions().Untrusted())
struct SXMLLoadOptions {
    /// As the parameters of CXMLManager::LoadDocument, but for the location of a schema, which is
    /// as in SXMLLoadSettings (load.h).
    bool validate = false;
    bool doSchema = false;
    std::string schemaLocation = {};  ///< Empty: none.
    bool schemaHasNamespace = false;
    bool keepPrefixes = false;

    /// As in SXMLLoadSettings; namespace and location of each schema.
    std::vector<std::pair<std::string, std::string>> schemas = {};
    bool requireGrammar = false;
    unsigned int problemLimit = 1;
    bool isUntrusted = false;
    SXMLUntrusted limits = {};  ///< If isUntrusted.
    std::function<bool(std::uint64_t read, std::uint64_t total)> progress = {};  ///< Or empty.
    std::function<bool()> goesOn = {};  ///< See Stop; or empty.
    std::string name = {};              ///< Empty: that of the source.

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
    /// namespace `hasNamespace` is true and `location` a list of pairs, "urn:books books.xsd". A
    /// location is a path, relative to the working directory, or a URL. One that cannot be read is
    /// an error.
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

    /// One more schema: for the elements of this namespace, "" for those in none. Its location may
    /// hold blanks.
    [[nodiscard]] SXMLLoadOptions Schema(const std::string& uri,
                                         const std::string& location) const {
        SXMLLoadOptions changed(*this);
        changed.validate = true;
        changed.doSchema = true;
        changed.schemas.emplace_back(uri, location);
        return changed;
    }

    /// A document that is not validated by any grammar is an error, instead of valid. It validates:
    /// by the document's DTD, unless a schema is asked for as well.
    [[nodiscard]] SXMLLoadOptions RequireGrammar() const {
        SXMLLoadOptions changed(*this);
        changed.validate = true;
        changed.requireGrammar = true;
        return changed;
    }

    /// Validity errors do not end the load; all of them are thrown together at its end, or when
    /// there are so many. 0 is no limit.
    [[nodiscard]] SXMLLoadOptions CollectProblems(unsigned int limit = 100) const {
        SXMLLoadOptions changed(*this);
        changed.problemLimit = limit;
        return changed;
    }

    /// The document is a stranger's: it has limits, may not have a document type declaration, and
    /// names no schemas (SXMLUntrusted, load.h).
    [[nodiscard]] SXMLLoadOptions Untrusted(const SXMLUntrusted& most = SXMLUntrusted()) const {
        SXMLLoadOptions changed(*this);
        changed.isUntrusted = true;
        changed.limits = most;
        return changed;
    }

    /// Calls `callback(read, total)` as the document is read, see SXMLLoadSettings::progress. It
    /// may return false to end the load, or nothing.
    template <typename Callback>
    [[nodiscard]] SXMLLoadOptions Progress(Callback callback) const {
        using Result = std::invoke_result_t<Callback&, std::uint64_t, std::uint64_t>;
        SXMLLoadOptions changed(*this);
        std::function<Result(std::uint64_t, std::uint64_t)> held(std::move(callback));
        if constexpr (!std::is_void_v<Result>) {
            changed.progress = std::move(held);
        } else if (held) {
            changed.progress = [held](std::uint64_t read, std::uint64_t total) {
                held(read, total);
                return true;
            };
        }
        return changed;
    }

    /// Asks `callback()` as often as progress is told. When it returns false the load ends with
    /// CXMLError (9, message 3, "stopped by the program"): for a button, or a deadline.
    [[nodiscard]] SXMLLoadOptions Stop(std::function<bool()> callback) const {
        SXMLLoadOptions changed(*this);
        changed.goesOn = std::move(callback);
        return changed;
    }

    /// What errors call a document that is no file, and what relative names in it refer to.
    [[nodiscard]] SXMLLoadOptions Name(const std::string& of) const {
        SXMLLoadOptions changed(*this);
        changed.name = of;
        return changed;
    }
};

// Internal.
namespace convenience_inside {

// Does the work; the library's exceptions become CXMLErrors.
template <typename Work>
auto AsErrors(Work work) -> decltype(work()) {
#if defined(__cpp_exceptions)
    try {
        return work();
    } catch (CXMLException&) {
        XMLRethrowAsError();
    }
#else
    return work();
#endif
}

// The manager answers NULL for a document without memory, which a caller of an owning pointer would
// have to look for; here it is std::bad_alloc like everywhere else.
inline CXMLDocumentPtr Own(CXMLDocument* document) {
#if defined(__cpp_exceptions)
    if (document == nullptr) throw std::bad_alloc();
#endif
    return CXMLDocumentPtr(document);
}

// Progress and being stopped, as one function of the settings.
inline bool TellProgress(void* context, std::uint64_t read, std::uint64_t total) {
    const SXMLLoadOptions& options = *static_cast<const SXMLLoadOptions*>(context);
    return (!options.progress || options.progress(read, total)) &&
           (!options.goesOn || options.goesOn());
}

// Options as the library takes them. They show those, which must stay where they are.
class CSettings {
public:
    CSettings(const SXMLLoadOptions& options, SXMLSource& source) {
        m_Settings.validate = options.validate;
        m_Settings.doSchema = options.doSchema;
        m_Settings.schemaHasNamespace = options.schemaHasNamespace;
        m_Settings.keepPrefixes = options.keepPrefixes;
        if (!options.schemaLocation.empty()) {
            m_Settings.schemaLocation = options.schemaLocation.c_str();
        }
        for (const auto& schema : options.schemas) {
            m_Schemas.push_back({schema.first.c_str(), schema.second.c_str()});
        }
        m_Settings.schemas = m_Schemas.data();
        m_Settings.schemaCount = m_Schemas.size();
        m_Settings.requireGrammar = options.requireGrammar;
        m_Settings.problemLimit = options.problemLimit;
        if (options.isUntrusted) m_Settings.untrusted = &options.limits;
        if (options.progress || options.goesOn) {
            m_Settings.progress = TellProgress;
            m_Settings.progressContext = const_cast<SXMLLoadOptions*>(&options);
        }
        if (!options.name.empty()) source.name = options.name.c_str();
    }
    CSettings(const CSettings&) = delete;
    CSettings& operator=(const CSettings&) = delete;

    const SXMLLoadSettings& Get() const { return m_Settings; }

private:
    SXMLLoadSettings m_Settings;
    std::vector<SXMLSchemaName> m_Schemas;
};

inline CXMLDocumentPtr Load(SXMLSource source, const SXMLLoadOptions& options) {
    return Own(XMLLoad(source, CSettings(options, source).Get()));
}
inline void Load(SXMLSource source, const SXMLLoadOptions& options, CXMLSaxHandler& handler) {
    XMLLoad(source, CSettings(options, source).Get(), handler);
}

inline SXMLSource FileNamed(const char* name) {
    SXMLSource source;
    source.fileName = name;
    return source;
}

// Paths as std::filesystem has them, which this header need not include.
template <typename Path>
using IfPath = std::enable_if_t<
    std::is_same_v<decltype(std::declval<const Path&>().native()), const std::string&>, int>;
inline SXMLSource FileAt(const char* path) {
    SXMLSource source;
    source.path = path;
    return source;
}

// The library counts the bytes of a text in more than the plain loads do, which cannot take one of
// 4 GiB or more; it is the same here.
inline SXMLSource Bytes(std::string_view text) {
    SXMLSource source;
    const std::uint64_t size = text.size();
    source.bytes = size <= UINT_MAX ? text.data() : nullptr;
    source.length = text.size();
    return source;
}

// By its buffer: the stream itself would take the end of the document for a failure, and throw if
// it is told to throw at failures.
inline std::ptrdiff_t ReadStream(void* context, char* to, std::size_t room) {
    std::istream& stream = *static_cast<std::istream*>(context);
    if (stream.eof()) return 0;
    if (!stream.good()) return -EIO;
    std::ptrdiff_t count = 0;
#if defined(__cpp_exceptions)
    try {
        count = stream.rdbuf()->sgetn(to, static_cast<std::streamsize>(room));
    } catch (...) {
        if ((stream.exceptions() & std::ios::badbit) != 0) throw;
        stream.setstate(std::ios::badbit);
        return -EIO;
    }
#else
    count = stream.rdbuf()->sgetn(to, static_cast<std::streamsize>(room));
#endif
    if (count == 0 && (stream.exceptions() & std::ios::eofbit) == 0) {
        stream.setstate(std::ios::eofbit);
    }
    return count;
}
inline SXMLSource Stream(std::istream& stream) {
    SXMLSource source;
    source.read = ReadStream;
    source.readContext = &stream;
    return source;
}

inline std::ptrdiff_t ReadFunction(void* context, char* to, std::size_t room) {
    return (*static_cast<const std::function<std::ptrdiff_t(char*, std::size_t)>*>(context))(to,
                                                                                             room);
}
inline SXMLSource Function(const std::function<std::ptrdiff_t(char*, std::size_t)>& read) {
    SXMLSource source;
    if (read) source.read = ReadFunction;
    source.readContext = const_cast<std::function<std::ptrdiff_t(char*, std::size_t)>*>(&read);
    return source;
}

inline SXMLSource Descriptor(int descriptor) {
    SXMLSource source;
    source.descriptor = descriptor;
    return source;
}

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
/// (CXMLDocument::SetDTDRef). A NULL or invalid name throws CXMLError (3, "Invalid XML name:
/// '%s'.").
inline CXMLDocumentPtr XMLNewDocument() {
    return convenience_inside::Own(convenience_inside::AsErrors(
        [] { return CXMLManager::GetInstance().CreateDocument(nullptr, nullptr); }));
}
inline CXMLDocumentPtr XMLNewDocument(const char* rootName, const char* dtdName = nullptr,
                                      const char* dtdPath = nullptr) {
    return convenience_inside::AsErrors([&] {
        CXMLDocumentPtr document =
            convenience_inside::Own(CXMLManager::GetInstance().CreateDocument(dtdName, dtdPath));
        if (document != nullptr) document->CreateRoot(rootName);
        return document;
    });
}

/// CXMLDocument::Clone.
inline CXMLDocumentPtr XMLClone(CXMLDocument& document) {
    return convenience_inside::Own(document.Clone());
}

/// Loads a file, or what the parser's URLs name: "http://..." is fetched, also for a document that
/// is untrusted. A name that a stranger chose is to be a std::filesystem::path.
inline CXMLDocumentPtr XMLLoadFile(const char* fileName,
                                   const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return convenience_inside::Load(convenience_inside::FileNamed(fileName), options);
}
inline CXMLDocumentPtr XMLLoadFile(const std::string& fileName,
                                   const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return XMLLoadFile(fileName.c_str(), options);
}
/// Loads a file that a std::filesystem::path names, whatever characters that is made of: never a
/// URL.
template <typename Path, convenience_inside::IfPath<Path> = 0>
CXMLDocumentPtr XMLLoadFile(const Path& path, const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return convenience_inside::Load(convenience_inside::FileAt(path.native().c_str()), options);
}

/// Loads the document that `text` holds, in the encoding that its declaration names, else UTF-8.
/// The text is not copied and only read. An empty one, and one of 4 GiB or more, throws CXMLError
/// (1, "invalid parameter"): such a document can be loaded from a file only.
inline CXMLDocumentPtr XMLLoadText(std::string_view text,
                                   const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return convenience_inside::Load(convenience_inside::Bytes(text), options);
}
/// The same for a terminated string; NULL is an empty one.
inline CXMLDocumentPtr XMLLoadText(const char* text,
                                   const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return XMLLoadText(text == nullptr ? std::string_view() : std::string_view(text), options);
}

/// Loads what a stream has from where it is, to its end. A stream that fails is CXMLError (1,
/// "Error loading 'Stream':..."); one that throws, throws.
inline CXMLDocumentPtr XMLLoadStream(std::istream& stream,
                                     const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return convenience_inside::Load(convenience_inside::Stream(stream), options);
}

/// Loads what an open file, pipe or socket has from where it is, to its end. It stays open.
inline CXMLDocumentPtr XMLLoadDescriptor(int descriptor,
                                         const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return convenience_inside::Load(convenience_inside::Descriptor(descriptor), options);
}

/// Loads what a function reads: see SXMLSource::read (load.h).
inline CXMLDocumentPtr XMLLoadReader(
    const std::function<std::ptrdiff_t(char* to, std::size_t room)>& read,
    const SXMLLoadOptions& options = SXMLLoadOptions()) {
    return convenience_inside::Load(convenience_inside::Function(read), options);
}
/// @}

/// @name Documents as callbacks to `handler`
/// From the same sources. keepPrefixes has no effect. Source offsets (CXMLManager) are tracked as
/// in the plain loads.
/// @{

/// Loads a file as callbacks to `handler`.
inline void XMLLoadFile(const char* fileName, CXMLSaxHandler& handler,
                        const SXMLLoadOptions& options = SXMLLoadOptions()) {
    convenience_inside::Load(convenience_inside::FileNamed(fileName), options, handler);
}
inline void XMLLoadFile(const std::string& fileName, CXMLSaxHandler& handler,
                        const SXMLLoadOptions& options = SXMLLoadOptions()) {
    XMLLoadFile(fileName.c_str(), handler, options);
}
template <typename Path, convenience_inside::IfPath<Path> = 0>
void XMLLoadFile(const Path& path, CXMLSaxHandler& handler,
                 const SXMLLoadOptions& options = SXMLLoadOptions()) {
    convenience_inside::Load(convenience_inside::FileAt(path.native().c_str()), options, handler);
}

/// The text must stay as it is until the load has ended.
inline void XMLLoadText(std::string_view text, CXMLSaxHandler& handler,
                        const SXMLLoadOptions& options = SXMLLoadOptions()) {
    convenience_inside::Load(convenience_inside::Bytes(text), options, handler);
}
inline void XMLLoadText(const char* text, CXMLSaxHandler& handler,
                        const SXMLLoadOptions& options = SXMLLoadOptions()) {
    XMLLoadText(text == nullptr ? std::string_view() : std::string_view(text), handler, options);
}

/// Loads what a stream has from where it is, to its end.
inline void XMLLoadStream(std::istream& stream, CXMLSaxHandler& handler,
                          const SXMLLoadOptions& options = SXMLLoadOptions()) {
    convenience_inside::Load(convenience_inside::Stream(stream), options, handler);
}
/// Loads what an open file, pipe or socket has from where it is, to its end.
inline void XMLLoadDescriptor(int descriptor, CXMLSaxHandler& handler,
                              const SXMLLoadOptions& options = SXMLLoadOptions()) {
    convenience_inside::Load(convenience_inside::Descriptor(descriptor), options, handler);
}
/// Loads what a function reads.
inline void XMLLoadReader(const std::function<std::ptrdiff_t(char* to, std::size_t room)>& read,
                          CXMLSaxHandler& handler,
                          const SXMLLoadOptions& options = SXMLLoadOptions()) {
    convenience_inside::Load(convenience_inside::Function(read), options, handler);
}
/// @}

/// @name A document as text
/// @{

/// What CXMLDocument::Save writes to a stream, with its failures, as CXMLErrors. Deliberate: not
/// through a std::ostringstream, which answers a part of the document when memory runs out; here
/// that throws std::bad_alloc.
inline std::string XMLToString(CXMLDocument& document, bool format = false) {
    std::string text;
    convenience_inside::CStringBuffer buffer(text);
    std::ostream out(&buffer);
    out.exceptions(std::ios::badbit | std::ios::failbit);
    convenience_inside::AsErrors([&] { document.Save(out, format); });
    return text;
}
/// @}

}  // namespace norvask

#endif
