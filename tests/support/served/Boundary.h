// See the header of the other directory.
#pragma once

#include "tests/support/direct/Boundary.h"
