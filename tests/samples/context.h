/// What the samples of the documents and headers take as given: their includes, and names that a reader makes up.
#ifndef SAMPLES_CONTEXT_H
#define SAMPLES_CONTEXT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <cwchar>
#include <string>
#include <string_view>
#include <vector>

#include <txlogu/txlogu.h>
#include <vlafx/exceptions.h>
#include <vlhostkit/vlhostkit.h>

#ifndef _WIN32
#include <vlplatform/machine.h>
#endif

namespace samples {

#ifndef _WIN32
using namespace vlplatform;
#endif

extern const wchar_t* id;
extern const wchar_t* name;
extern const wchar_t* path;
extern const wchar_t* root;
extern int type;
extern CSecStr secret;
extern PSID sid;
extern SYSTEMTIME time;

enum Resources : int { IDD_LOG_ON = 1, IDC_USER, IDC_PASSWORD };

void logOn(const wchar_t* user);
void readPassword(wchar_t* text, std::size_t size);

}  // namespace samples

#endif
