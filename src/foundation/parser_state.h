// Internal. What the library knows of the parser as a whole. The manager, which initialises the
// parser, tells; everything below it asks here.
#ifndef NORVASK_FOUNDATION_PARSER_STATE_H
#define NORVASK_FOUNDATION_PARSER_STATE_H

namespace norvask {

// Whether the one manager of the process has initialised the parser; not, before this is called.
void SetParserInitialised(bool initialised) noexcept;

// Throws CXMLException (parser not initialised) when it has not.
void RequireParserInitialised();

// Asks the parser's local transcoder, once the parser is initialised, whether narrow strings are
// UTF-8.
void ProbeLocalEncoding();

// What the probe found; false before. When it is false the fast paths for UTF-8 are not taken and
// all text goes through the parser's transcoders.
extern bool g_bLocalEncodingIsUtf8;
inline bool LocalEncodingIsUtf8() noexcept { return g_bLocalEncodingIsUtf8; }

}  // namespace norvask

#endif
