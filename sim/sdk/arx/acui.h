#pragma once

#include "adui.h"
