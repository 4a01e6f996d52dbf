#pragma once

// Numbers of the resources and their controls, shared by the resource script and the code.
// The same control number means different things in different dialogs.

#define IDI_KORVANE 128

// Lamps
#define IDB_LAMP_RED 139
#define IDB_LAMP_GREEN 140
#define IDB_LAMP_ORANGE 141
#define IDB_LAMP_RED_LARGE 142
#define IDB_LAMP_GREEN_LARGE 143

// Dialogs
#define IDD_MAIN_PANEL 104
#define IDD_INPUT_CHANNEL_PAGE 1003
#define IDD_TABLE_LIST 1008
#define IDD_SYSTEM_PAGE 1018
#define IDD_PROGRESS 1023
#define IDD_ABOUT 1028
#define IDD_PANEL_BODY 1029
#define IDD_CONTROL_TABLES_PAGE 1036
#define IDD_NETWORK_PAGE 1047
#define IDD_FRAME_LIST_PAGE 1050
#define IDD_SERVICE_FREQUENCY_PAGE 1052
#define IDD_MONITOR_PAGE 1076
#define IDD_SERVICE_LIST_PAGE 1080
#define IDD_FRAME_STRUCTURE_PAGE 1084
#define IDD_GRAPHIC_MONITOR_PAGE 1089
#define IDD_CA_PAGE 1092

#ifndef IDC_STATIC
#define IDC_STATIC (-1)
#endif

// Frame that child pages are placed in: panel body and table list
#define IDC_PAGE_FRAME 1024

// Panel body
#define IDC_SHOW_INPUT_CHANNELS 21
#define IDC_SHOW_CONTROL_TABLES 23
#define IDC_SAVE_TO_DEVICE 25
#define IDC_LOAD_FROM_DEVICE 26
#define IDC_REBOOT 27
#define IDC_RESTORE_DEFAULTS 28
#define IDC_SHOW_MONITOR 29
#define IDC_SHOW_SYSTEM 30
#define IDC_EXPORT 31
#define IDC_IMPORT 32
#define IDC_ABOUT 33

// Table list
#define IDC_TABLES 1000

// Monitoring: the panel
#define IDC_MONITOR_TABS 1042
#define IDC_LAMP_FRAME 1109
#define IDC_LAMP_DATA_INPUT 1110
#define IDC_LAMP_1PPS 1112
#define IDC_LAMP_10M 1113
#define IDC_LAMP_TOD 1114
#define IDC_LAMP_LINK 1115
#define IDC_TIME_OF_DAY 1122

// Monitoring: its pages
#define IDC_STRUCTURE_TREE 1035
#define IDC_REFRESH_TOGGLE 1037
#define IDC_BAR_CHART 1044
#define IDC_CHART_FRAME 1046
#define IDC_SERVICES 1106

// Progress dialog
#define IDC_PROGRESS_BAR 1082
#define IDC_PROGRESS_TEXT 1086

// About dialog
#define IDC_DEVICE_VERSION 1125
