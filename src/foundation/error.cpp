// CXMLError: an exception whose copies share everything, so that making one cannot fail.
#include "norvask/error.h"

#include <typeinfo>
#include <utility>

namespace norvask {

CXMLError::CXMLError(int id, const char* text, std::vector<SXMLProblem> problems)
    : CXMLException(id, text),
      m_pProblems(problems.empty()
                      ? nullptr
                      : std::make_shared<const std::vector<SXMLProblem>>(std::move(problems))) {}

CXMLError::CXMLError(const CXMLException& other) noexcept : CXMLException(SShared{other}) {}

// The base has no copy constructor for what is const, and its own one could fail.
CXMLError::CXMLError(const CXMLError& other) noexcept
    : CXMLException(SShared{other}), std::exception(other), m_pProblems(other.m_pProblems) {}

CXMLError& CXMLError::operator=(const CXMLError& other) noexcept = default;

CXMLError::~CXMLError() = default;

const char* CXMLError::what() const noexcept { return GetMessage(); }

// The text of the exception itself, which an override of a derived class does not change.
const char* CXMLError::GetMessage() const noexcept {
    return const_cast<CXMLError*>(this)->CXMLException::GetMessage();
}

int CXMLError::GetID() const noexcept {
    return const_cast<CXMLError*>(this)->CXMLException::GetID();
}

const std::vector<SXMLProblem>& CXMLError::Problems() const noexcept {
    static const std::vector<SXMLProblem> NONE;
    return m_pProblems == nullptr ? NONE : *m_pProblems;
}

void XMLRethrowAsError() {
    try {
        throw;
    } catch (CXMLException& exception) {
        if (typeid(exception) != typeid(CXMLException)) {
            throw;
        }
        throw CXMLError(exception);
    }
}

}  // namespace norvask
