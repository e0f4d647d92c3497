// Internal. A load, once its arguments are checked.
#ifndef NORVASK_LOAD_LOADING_H
#define NORVASK_LOAD_LOADING_H

#include <cstddef>

#include "load/plain/fast_lane.h"

namespace norvask {

class CDocumentSource;
class CWatchedLoad;
class CXMLDocument;
class CXMLSaxHandler;

// How a document was read.
enum class ELane { NOT_TRIED, LEFT, TAKEN };

struct SLoadOptions {
    bool validate = false;
    bool doSchema = false;
    const char* schemaLocation = nullptr;
    bool schemaHasNamespace = false;
    bool calculateSourceOffsets = false;

    // A load with settings, which take the place of those above but for the last; NULL for a plain
    // one.
    CWatchedLoad* watched = nullptr;

    // For tests, which compare the two ways to read a document and look at all sizes.
    bool fastLane = true;
    std::size_t window = PLAIN_WINDOW;
    ELane* lane = nullptr;  // is told how the document was read
};

// A document of a file or of a block, as a tree of which the caller becomes the owner, or as
// callbacks. No argument is NULL. Throw what CXMLManager::LoadDocument throws; with a watched load
// SLoadEnd for what ends it, and a callback's CXMLException as it is.
CXMLDocument* LoadTree(CDocumentSource& source, bool keepPrefixes, const SLoadOptions& options);
void LoadEvents(CDocumentSource& source, CXMLSaxHandler& client, const SLoadOptions& options);
CXMLDocument* LoadTree(const char* fileName, bool keepPrefixes, const SLoadOptions& options);
CXMLDocument* LoadTree(const unsigned char* buffer, unsigned int length, bool keepPrefixes,
                       const SLoadOptions& options);
void LoadEvents(const char* fileName, CXMLSaxHandler& client, const SLoadOptions& options);
void LoadEvents(const unsigned char* buffer, unsigned int length, CXMLSaxHandler& client,
                const SLoadOptions& options);

}  // namespace norvask

#endif
