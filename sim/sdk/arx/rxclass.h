#pragma once

#include "rxobject.h"
