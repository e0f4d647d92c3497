// XMLLoad: the arguments, the kinds of sources, and errors as CXMLErrors.
#include "norvask/load.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <xercesc/util/OutOfMemoryException.hpp>

#include "foundation/errors.h"
#include "foundation/parser_state.h"
#include "foundation/utf8.h"
#include "load/loading.h"
#include "load/manager_access.h"
#include "load/parser/document_source.h"
#include "load/watched_load.h"
#include "norvask/manager.h"

namespace norvask {
namespace {

// What a tree is made of may be read ahead, since nobody sees a part of it, and then the fast lane
// can read it, and read it again. A document of callbacks is told as it comes in.
const std::size_t MOST_AHEAD = std::size_t{16} << 20;

// A program may be older than the library, and have fewer fields. A newer one may have more: where
// it sets one of those, it asks for what this library does not do.
template <typename Struct>
Struct Known(const Struct& given) {
    Struct known;
    std::memcpy(static_cast<void*>(&known), &given, std::min(given.size, sizeof known));
    const char* const bytes = reinterpret_cast<const char*>(&given);
    for (std::size_t i = sizeof known; i < given.size; ++i) {
        if (bytes[i] != 0) {
            ThrowInvalidParameter();
        }
    }
    return known;
}

class CDescriptor {
public:
    explicit CDescriptor(const char* path) noexcept
        : m_nDescriptor(open(path, O_RDONLY | O_CLOEXEC | O_NOCTTY)) {}
    CDescriptor(const CDescriptor&) = delete;
    CDescriptor& operator=(const CDescriptor&) = delete;
    ~CDescriptor() {
        if (m_nDescriptor >= 0) {
            close(m_nDescriptor);
        }
    }
    int Get() const noexcept { return m_nDescriptor; }

private:
    const int m_nDescriptor;
};

std::ptrdiff_t ReadDescriptor(int descriptor, char* to, std::size_t room) {
    ssize_t count = 0;
    do {
        count = read(descriptor, to, room);
    } while (count < 0 && errno == EINTR);
    return count < 0 ? -errno : count;
}

CReadSource::CRead ReadOf(int descriptor) {
    return
        [descriptor](char* to, std::size_t room) { return ReadDescriptor(descriptor, to, room); };
}

bool HasOneOrigin(const SXMLSource& source) noexcept {
    const bool origins[] = {source.fileName != nullptr, source.path != nullptr,
                            source.bytes != nullptr, source.descriptor >= 0,
                            source.read != nullptr};
    return std::count(std::begin(origins), std::end(origins), true) == 1;
}

std::size_t BytesAhead(const SXMLLoadSettings& settings) noexcept {
    // The bytes are told as they are read.
    if (settings.progress != nullptr) {
        return 0;
    }
    const std::uint64_t most = settings.untrusted != nullptr ? settings.untrusted->maxBytes : 0;
    return most == 0 || most >= MOST_AHEAD ? MOST_AHEAD : static_cast<std::size_t>(most) + 1;
}

// Lets `load` load a document with these options.
template <typename Load>
void LoadFrom(CDocumentSource& source, const SXMLLoadSettings& settings, std::size_t ahead,
              Load load) {
    CWatchedLoad watched(settings, source);
    SLoadOptions options;
    options.watched = &watched;
    try {
        try {
            source.ReadAhead(ahead, watched.Watch());
        } catch (const SReadFailure& failure) {
            watched.AddReadFailure(failure.error);
            throw SLoadEnd();
        }
        watched.Begin();
        load(source, options);
        watched.End();
    } catch (const SLoadEnd&) {
        watched.Throw();
    }
}

template <typename Load>
void LoadFromAny(const SXMLSource& source, const SXMLLoadSettings& settings, std::size_t ahead,
                 Load load) {
    const char* const streamName = source.name != nullptr ? source.name : "Stream";
    if (source.fileName != nullptr) {
        CFileSource file(source.fileName);
        LoadFrom(file, settings, ahead, load);
    } else if (source.bytes != nullptr) {
        CMemorySource block(static_cast<const unsigned char*>(source.bytes), source.length,
                            source.name != nullptr ? source.name : "Memfile");
        LoadFrom(block, settings, ahead, load);
    } else if (source.path != nullptr && (IsUtf8(source.path) || !LocalEncodingIsUtf8())) {
        CPathSource file(source.path);
        LoadFrom(file, settings, ahead, load);
    } else if (source.path != nullptr) {
        // The parser's strings cannot show such a name.
        const CDescriptor opened(source.path);
        CReadSource file(opened.Get() < 0 ? CReadSource::CRead([error = errno](char*, std::size_t) {
                             return static_cast<std::ptrdiff_t>(-error);
                         })
                                          : ReadOf(opened.Get()),
                         source.path);
        LoadFrom(file, settings, ahead, load);
    } else if (source.read != nullptr) {
        CReadSource stream(
            [&source](char* to, std::size_t room) {
                return source.read(source.readContext, to, room);
            },
            streamName);
        LoadFrom(stream, settings, ahead, load);
    } else {
        CReadSource stream(ReadOf(source.descriptor), streamName);
        LoadFrom(stream, settings, ahead, load);
    }
}

// Checks the arguments, and lets `load` load. What it throws is a CXMLError.
template <typename Load>
void LoadChecked(const SXMLSource& givenSource, const SXMLLoadSettings& givenSettings, bool isTree,
                 Load load) {
    try {
        CManagerAccess::RequireInitialised(CXMLManager::GetInstance());
        const SXMLSource source = Known(givenSource);
        const SXMLLoadSettings settings = Known(givenSettings);
        if (!HasOneOrigin(source) || (source.bytes != nullptr && source.length == 0)) {
            ThrowInvalidParameter();
        }
        LoadFromAny(source, settings, isTree ? BytesAhead(settings) : 0,
                    [&](CDocumentSource& from, const SLoadOptions& options) {
                        load(from, options, settings);
                    });
    } catch (CXMLException&) {
        XMLRethrowAsError();
    } catch (const xercesc::OutOfMemoryException&) {
        throw std::bad_alloc();
    }
}

struct SDelete {
    void operator()(CXMLDocument* document) const { document->Delete(); }
};

}  // namespace

CXMLDocument* XMLLoad(const SXMLSource& source, const SXMLLoadSettings& settings) {
    std::unique_ptr<CXMLDocument, SDelete> document;
    LoadChecked(
        source, settings, true,
        [&](CDocumentSource& from, const SLoadOptions& options, const SXMLLoadSettings& known) {
            document.reset(LoadTree(from, known.keepPrefixes, options));
        });
    return document.release();
}

void XMLLoad(const SXMLSource& source, const SXMLLoadSettings& settings, CXMLSaxHandler& handler) {
    LoadChecked(source, settings, false,
                [&](CDocumentSource& from, SLoadOptions options, const SXMLLoadSettings&) {
                    options.calculateSourceOffsets =
                        CManagerAccess::CalculatesSourceOffsets(CXMLManager::GetInstance());
                    LoadEvents(from, handler, options);
                });
}

}  // namespace norvask
