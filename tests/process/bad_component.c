/* Components that are not to be used, one for each way of being wrong. */
#include <orif/lowerlayer/orvex_commlib.h>
#include <stddef.h>

#ifndef NO_ENTRY
static void* Create(OrvexValue* fault) {
  static const char reason[] = "out of licences";
  fault->kind = ORVEX_TEXT;
  fault->count = sizeof reason - 1;
  fault->as.text = reason;
  return NULL;
}
static void Release(void* object) { (void)object; }
static int32_t Lookup(void* object, const char* name, int32_t* id) {
  (void)object, (void)name, (void)id;
  return 1;
}
static int32_t Invoke(void* object, int32_t id, uint16_t call, const OrvexValue* arguments,
                      int32_t count, OrvexValue* result) {
  (void)object, (void)id, (void)call, (void)arguments, (void)count, (void)result;
  return 1;
}

const OrvexCommLib* OrvexCommLibEntry(uint32_t version) {
  static OrvexCommLib component = {ORVEX_COMMLIB_VERSION, Create, Release, Lookup, Invoke};
  (void)version;
#ifdef OTHER_VERSION
  component.version = ORVEX_COMMLIB_VERSION + 1;
#endif
#ifdef MISSING
  component.MISSING = NULL;
#endif
#ifdef NO_INTERFACE
  return NULL;
#else
  return &component;
#endif
}
#endif

extern const int unused;
const int unused = 0;
