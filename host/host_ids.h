#pragma once

// Numbers of the host's resources and of the controls in its address bar.

#define IDI_HOST 1
#define IDD_ADDRESS_BAR 100

#define IDC_ADDRESS 1001
#define IDC_CONNECT 1002
#define IDC_DISCONNECT 1003
#define IDC_STATUS_LINE 1004

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif
