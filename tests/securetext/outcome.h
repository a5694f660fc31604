/// How a call of secure text ended.
#ifndef SECURETEXT_OUTCOME_H
#define SECURETEXT_OUTCOME_H

#include <new>
#include <string_view>
#include <utility>

#include <vlafx/exceptions.h>

namespace securetext {

inline constexpr std::string_view kDone = "done";
inline constexpr std::string_view kMemory = "CMemoryException";
inline constexpr std::string_view kBadAlloc = "bad_alloc";
inline constexpr std::string_view kInvalid = "COleException 80070057";
inline constexpr std::string_view kArgument = "CInvalidArgException";
inline constexpr std::string_view kOverflow = "SafeIntException 1";

/// Calls, and ends the exception. Allocates nothing.
template <class Call>
std::string_view outcomeOf(Call&& call) {
  try {
    std::forward<Call>(call)();
    return kDone;
  } catch (CMemoryException* failure) {
    failure->Delete();
    return kMemory;
  } catch (COleException* failure) {
    const HRESULT code = failure->m_sc;
    failure->Delete();
    return code == static_cast<HRESULT>(0x80070057u) ? kInvalid : "COleException of another code";
  } catch (CInvalidArgException* failure) {
    failure->Delete();
    return kArgument;
  } catch (const msl::utilities::SafeIntException& failure) {
    return failure.m_code == msl::utilities::SafeIntArithmeticOverflow ? kOverflow : "SafeIntException of another code";
  } catch (const std::bad_alloc&) {
    return kBadAlloc;
  }
}

}  // namespace securetext

#endif
