/* A component that passes every call on to another one, which HANGING_COMPONENT_PASSES_TO names,
 * until the file HANGING_COMPONENT_FILE exists: then a bulk read does not return before the file is
 * gone. */
#include <dlfcn.h>
#include <stddef.h>
#include <stdlib.h>
#include <unistd.h>

#include "orif/lowerlayer/orvex_commlib.h"

enum { ReadRShort = 56 };

static const OrvexCommLib* other;

static int32_t Invoke(void* object, int32_t id, uint16_t call, const OrvexValue* arguments,
                      int32_t count, OrvexValue* result) {
  const char* file = getenv("HANGING_COMPONENT_FILE");
  while (id == ReadRShort && file != NULL && access(file, F_OK) == 0) usleep(20000);
  return other->invoke(object, id, call, arguments, count, result);
}

const OrvexCommLib* OrvexCommLibEntry(uint32_t version) {
  static OrvexCommLib table;
  const char* path = getenv("HANGING_COMPONENT_PASSES_TO");
  void* component = path == NULL ? NULL : dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (component == NULL) return NULL;
  OrvexCommLibEntryFunction entry;
  *(void**)&entry = dlsym(component, ORVEX_COMMLIB_ENTRY);
  other = entry == NULL ? NULL : entry(version);
  if (other == NULL) return NULL;
  table = *other;
  table.invoke = Invoke;
  return &table;
}
