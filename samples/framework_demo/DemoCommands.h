// Numbers that the sources and the resources share: plain macros, for the resource compiler.
#pragma once

#define DEMO_MENU_BAR 128
#define DEMO_ZOOM_MENU 201
#define DEMO_COLOR_MENU 202
#define DEMO_NO_SUCH_MENU 299

// The framework's own.
#define DEMO_QUIT 9
#define DEMO_ABOUT 18

#define DEMO_NEW 100
#define DEMO_COPY 110
#define DEMO_PASTE 111
#define DEMO_CLEAR 112
#define DEMO_ZOOM 120
#define DEMO_ZOOM_NORMAL 121
#define DEMO_ZOOM_DOUBLE 122
#define DEMO_COLOR 130
#define DEMO_COLOR_CHOOSE 131
#define DEMO_COLOR_BLACK 132
#define DEMO_KEEP_WINDOW 140
#define DEMO_FAIL_CHECK 141
#define DEMO_THROW 142
#define DEMO_MISSING_MENU 143
#define DEMO_HOLD_CLIPBOARD 144
