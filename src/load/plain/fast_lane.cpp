// The two ways into the fast lane.
#include "load/plain/fast_lane.h"

#include "load/plain/plain_to_client.h"
#include "load/plain/plain_to_tree.h"

namespace norvask {

bool ReadPlainTree(CByteSource& source, std::size_t window, bool keepPrefixes,
                   CTreeBuilder& builder, bool takesDoctype) {
    CContent content(source, window);
    CDoctype doctype;
    CPlainToTree sink(builder, keepPrefixes);
    return CPlainReader<CPlainToTree>(content, takesDoctype ? &doctype : nullptr, sink).Read() ||
           sink.IsWithoutMemory();
}

// Most documents that are not plain show it in front of the root, and need not be looked through.
// The parser decodes a whole block before it tells what stands there, and of a block that is
// ill-formed anywhere it tells nothing. So it must be known before the first event that there is
// none.
bool ReadPlainEvents(CByteSource& source, std::size_t window, CEventForwarder& forwarder,
                     bool takesDoctype) {
    CContent content(source, window);
    CDoctype doctype;
    CDoctype* const taken = takesDoctype ? &doctype : nullptr;
    CPlainToClient sink(forwarder);
    return ReadProlog(content, taken) && content.Window().Restart() && content.IsUtf8() &&
           CPlainReader<CPlainToClient>(content, taken, sink).Read();
}

}  // namespace norvask
