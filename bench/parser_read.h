// How the benchmarks set up the parser where it runs alone: as Norvask sets it up.
#ifndef NORVASK_BENCH_PARSER_READ_H
#define NORVASK_BENCH_PARSER_READ_H

#include <string>
#include <xercesc/sax2/DefaultHandler.hpp>

namespace norvask_bench {

// A new SAX2 reader reads the document into the handler. Throws std::runtime_error if it refuses
// the document.
void ReadByParser(const std::string& text, xercesc::DefaultHandler& handler);

}  // namespace norvask_bench

#endif
