// The two ways into the fast lane.
#include "load/plain/fast_lane.h"

#include "load/plain/plain_to_client.h"
#include "load/plain/plain_to_tree.h"

namespace norvask {

bool ReadPlainTree(CByteSource& source, std::size_t window, bool keepPrefixes,
                   CTreeBuilder& builder) {
    CContent content(source, window);
    CPlainToTree sink(builder, keepPrefixes);
    return CPlainReader<CPlainToTree>(content, sink).Read() || sink.IsWithoutMemory();
}

// Most documents that are not plain show it in front of the root, and need not be looked through.
// The parser decodes a whole block before it tells what stands there, and of a block that is
// ill-formed anywhere it tells nothing. So it must be known before the first event that there is
// none.
bool ReadPlainEvents(CByteSource& source, std::size_t window, CEventForwarder& forwarder) {
    CContent content(source, window);
    CPlainToClient sink(forwarder);
    return content.HasPlainProlog() && content.IsUtf8() &&
           CPlainReader<CPlainToClient>(content, sink).Read();
}

}  // namespace norvask
