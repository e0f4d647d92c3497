// The two ways into the fast lane.
#include "load/plain/fast_lane.h"

#include <optional>

#include "load/plain/plain_to_client.h"
#include "load/plain/plain_to_tree.h"
#include "load/watch/watched_bytes.h"

namespace norvask {
namespace {

// The bytes of a document, watched if somebody watches.
class CBytes {
public:
    CBytes(CByteSource& source, CWatch* watch) : m_Source(source) {
        if (watch != nullptr) {
            m_Watched.emplace(source, *watch);
        }
    }
    CByteSource& Get() noexcept { return m_Watched.has_value() ? *m_Watched : m_Source; }
    bool BeginTelling() { return !m_Watched.has_value() || m_Watched->BeginTelling(); }

private:
    CByteSource& m_Source;
    std::optional<CWatchedBytes> m_Watched;
};

}  // namespace

bool ReadPlainTree(CByteSource& source, std::size_t window, bool keepPrefixes,
                   CTreeBuilder& builder, bool takesDoctype, CWatch* watch) {
    CBytes bytes(source, watch);
    CContent content(bytes.Get(), window);
    CDoctype doctype;
    CPlainToTree sink(builder, keepPrefixes);
    return bytes.BeginTelling() &&
           (CPlainReader<CPlainToTree>(content, takesDoctype ? &doctype : nullptr, sink, watch)
                .Read() ||
            sink.IsWithoutMemory());
}

// Most documents that are not plain show it in front of the root, and need not be looked through.
// The parser decodes a whole block before it tells what stands there, and of a block that is
// ill-formed anywhere it tells nothing. So it must be known before the first event that there is
// none.
bool ReadPlainEvents(CByteSource& source, std::size_t window, CEventForwarder& forwarder,
                     bool takesDoctype, CWatch* watch) {
    CBytes bytes(source, watch);
    CContent content(bytes.Get(), window);
    CDoctype doctype;
    CDoctype* const taken = takesDoctype ? &doctype : nullptr;
    CPlainToClient sink(forwarder);
    return ReadProlog(content, taken) && content.Window().Restart() && content.IsUtf8() &&
           bytes.BeginTelling() && CPlainReader<CPlainToClient>(content, taken, sink, watch).Read();
}

}  // namespace norvask
