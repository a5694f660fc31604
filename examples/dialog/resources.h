// The numbers of the log-on dialog and its controls, for the resource script also.
#define IDD_LOG_ON 100
#define IDC_USER 1001
#define IDC_PASSWORD 1002
#define IDC_REPEAT 1003
#define IDC_HINT 1004
