// The numbers of the test's string resources, for the resource script also.
#define IDS_PLAIN 101
#define IDS_FORMAT 102
#define IDS_LONG 133
#define IDS_UNKNOWN 4000
