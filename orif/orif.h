// The one header that a client needs: Core, its tables and their items, in namespace orif.
#pragma once

#if __cplusplus >= 202002L || (defined(_MSVC_LANG) && _MSVC_LANG >= 202002L)

#include "orif/core/Core.h"
#include "orif/datatable/DataTable.h"
#include "orif/items/DataAlarm.h"
#include "orif/items/DataCurPos.h"
#include "orif/items/DataNumReg.h"
#include "orif/items/DataPosReg.h"
#include "orif/items/DataPosRegMG.h"
#include "orif/items/DataPosRegXyzwpr.h"
#include "orif/items/DataString.h"
#include "orif/items/DataSysVar.h"
#include "orif/items/DataSysVarPos.h"
#include "orif/items/DataTask.h"
#include "orif/version.h"

#else
#error "orif needs C++20: compile with -std=c++20, or target_compile_features(... cxx_std_20)"
#endif
