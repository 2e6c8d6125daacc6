#pragma once

// Result buffers and their type and status codes.
// Simplified: a selection of the codes; no functions for chains of buffers.

#include "adesk.h"

typedef double ads_real;
typedef ads_real ads_point[3];
typedef std::intptr_t ads_name[2];

struct ads_binary {
    short clen;
    char* buf;
};

union ads_u_val {
    ads_real rreal;
    ads_real rpoint[3];
    short rint;
    ACHAR* rstring;
    ads_name rlname;
    Adesk::Int32 rlong;
    std::int64_t mnInt64;
    ads_binary rbinary;
};

struct resbuf {
    resbuf* rbnext;
    short restype;
    ads_u_val resval;
};

// Types of a result buffer's value.
#define RTNONE 5000
#define RTREAL 5001
#define RTPOINT 5002
#define RTSHORT 5003
#define RTANG 5004
#define RTSTR 5005
#define RTENAME 5006
#define RTPICKS 5007
#define RTORINT 5008
#define RT3DPOINT 5009
#define RTLONG 5010
#define RTVOID 5014

// Status codes.
#define RTNORM 5100
#define RTERROR (-5001)
#define RTCAN (-5002)
#define RTREJ (-5003)
#define RTFAIL (-5004)
#define RTKWORD (-5005)
