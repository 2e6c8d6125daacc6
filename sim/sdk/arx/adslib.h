#pragma once

#include "acedads.h"
#include "acutads.h"
#include "adsdef.h"
