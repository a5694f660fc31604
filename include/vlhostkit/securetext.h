/// Secret text: strings, a list, a standard string on a wiping allocator, the release of automation buffers, and the
/// base of dialogs in which a secret is typed. docs/secrets.md tells how to work with them and what they cannot
/// promise.
#ifndef VLHOSTKIT_SECURETEXT_H
#define VLHOSTKIT_SECURETEXT_H

#include <vlafx/exceptions.h>
#include <vlhostkit/secstring.h>
#include <vlhostkit/securedialog.h>
#include <vlhostkit/securelist.h>
#include <vlhostkit/securestring.h>
#include <vlhostkit/types.h>

extern "C" {

/// Zeroes the data of an automation array and, if `keep` is 0, destroys the array; otherwise it stays alive, unlocked,
/// with its bounds. The elements are not told apart: references to strings or variants in them are zeroed, not
/// released.
///
/// Returns the result of the last automation call that ran; 0 for a null `array`. After a failed access nothing is
/// wiped; after a failed unaccess the array has been wiped and is not destroyed. Should the access succeed without a
/// data pointer, the array stays locked and alive, and the result is that success. The caller owns the array for the
/// length of the call.
VLHOSTKIT_API HRESULT vlSafeArrayDestroy(SAFEARRAY* array, BOOL keep);

/// Zeroes an automation string and, if `keep` is 0, frees it; otherwise it stays, with its length, full of zeros. The
/// length ahead of the text and the terminator are not touched. A null string is allowed.
///
/// CAUTION: the first record at level 0 (note) holds the text as it is before the wipe. Whoever lets TXLOG or a sink
/// take notes has the secret in the log.
VLHOSTKIT_API void vlSysFreeString(BSTR text, BOOL keep);

}  // extern "C"

#endif
