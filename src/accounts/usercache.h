/// The registry's memory of accounts that were looked up once. Not exported. Both functions write entry and exit
/// records and have a boolean result; the user name never reaches the log.
#ifndef VL_ACCOUNTS_USERCACHE_H
#define VL_ACCOUNTS_USERCACHE_H

#include "platform.h"

extern "C" {

/// Stores `sid` under "user.domain", or under the user name alone if `domainName` is empty. 87 for an empty user name
/// or a null SID.
BOOL vlNetAddSidToUserCacheW(LPCWSTR userName, LPCWSTR domainName, PSID sid);

/// Reads that value. `*sid` receives a block for LocalFree, on success only. 87 for an empty user name.
BOOL vlNetGetSidFromUserCacheW(LPCWSTR userName, LPCWSTR domainName, PSID* sid);

}  // extern "C"

#endif
