// The one header that a client needs: Core, its tables and their items, in namespace orif.
#pragma once

#include "orif/core/Core.h"
#include "orif/datatable/DataTable.h"
#include "orif/items/DataNumReg.h"
