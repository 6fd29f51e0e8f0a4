// Everything of orif::live: values of robot controllers by name, connections that come back,
// reasons of failures, and a thread for each controller.
#pragma once

#include "live/Clock.h"
#include "live/Controller.h"
#include "live/Monitor.h"
#include "live/Name.h"
#include "live/Reason.h"
#include "live/UsageError.h"
#include "live/Value.h"
