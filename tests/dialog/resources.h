// The numbers of the test's dialogs and controls, for the resource script also.
#define IDD_LOG_ON 200
#define IDC_USER 1001
#define IDC_PASSWORD 1002
#define IDC_SECOND 1003
#define IDC_CLEAR 1004
