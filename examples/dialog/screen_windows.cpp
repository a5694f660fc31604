#include "logon.h"

// The dialog is in the program's resources, and the desktop shows it.
void prepareScreen() {}
