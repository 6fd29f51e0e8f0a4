/* The component that the target component loads; it gets its interface from there. */
#include <orif/lowerlayer/orvex_commlib.h>

const OrvexCommLib* FuzzedEntry(uint32_t version);

__attribute__((visibility("default"))) const OrvexCommLib* OrvexCommLibEntry(uint32_t version) {
  return FuzzedEntry(version);
}
