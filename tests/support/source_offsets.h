// Callback loads that ask for the position in the source.
#ifndef NORVASK_TESTS_SUPPORT_SOURCE_OFFSETS_H
#define NORVASK_TESTS_SUPPORT_SOURCE_OFFSETS_H

#include <norvask/norvask.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/recording_handler.h"

namespace norvask_test {

// The switch, on for the lifetime of this.
class CSourceOffsets {
public:
    CSourceOffsets() { Manager().SetCalculateSourceOffsets(true); }
    CSourceOffsets(const CSourceOffsets&) = delete;
    CSourceOffsets& operator=(const CSourceOffsets&) = delete;
    ~CSourceOffsets() { Manager().SetCalculateSourceOffsets(false); }
};

// Notes the position at each callback: as lines for the eye, and as numbers.
class COffsetHandler : public CRecordingHandler {
public:
    COffsetHandler() {
        Do([this](const std::string& line) {
            const std::uint64_t offset = GetSourceOffset();
            m_Offsets.push_back(offset);
            m_Lines += std::to_string(offset) + " " + line + "\n";
        });
    }
    std::string m_Lines;
    std::vector<std::uint64_t> m_Offsets;
};

}  // namespace norvask_test

#endif
