#pragma once

#include "Pubhead.h"

/** The default name resolver: the destination name (endpoint title) of an application type.
    Never null; "" for AppUnknown and for values outside 0..26 (those also log an error).
    AppNavi's name is the "TITLE" of section "NAVIGATION" in "Bin/QN_MAIN.ini", read until it
    is not empty. Any thread. */
extern "C" const char* getDestName(int eAppType);

/** The printable name of an application type ("AppRadio"); "" outside 0..26. For log lines. */
const char* appTypeName(int eAppType);
