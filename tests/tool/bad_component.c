/* A component with a fault in nearly every operation; the environment variable FAULT chooses those
 * that would hide the others. */
#include <stdlib.h>
#include <string.h>

#include "orif/lowerlayer/orvex_commlib.h"

enum { Unknown = 1 };

static const char* reason = "";
static int objects, conversions, resets;

static int Has(const char* fault) {
  const char* chosen = getenv("FAULT");
  return chosen != NULL && strcmp(chosen, fault) == 0;
}

static int32_t Number(OrvexValue* result, int32_t value) {
  result->kind = ORVEX_I4;
  result->as.i4 = value;
  return 0;
}
static int32_t Text(OrvexValue* result, const char* text, int32_t count) {
  result->kind = ORVEX_TEXT;
  result->count = count;
  result->as.text = text;
  return 0;
}
static int32_t Refuse(OrvexValue* result, const char* why) {
  reason = why;
  return Number(result, -3);
}
static int32_t Fault(OrvexValue* result, const char* why) {
  Text(result, why, (int32_t)strlen(why));
  return Unknown;
}

static void* Create(OrvexValue* fault) {
  if (Has("single") && objects > 0) {
    Fault(fault, "\033[31monly one");
    return NULL;
  }
  ++objects;
  return &objects;
}
static void Release(void* object) { (void)object; }
static int32_t Lookup(void* object, const char* name, int32_t* id) {
  (void)object;
  *id = 99;
  return strcmp(name, "WriteSI") != 0;
}

static int32_t Assign(const OrvexValue* piece, OrvexValue* result) {
  char text[64] = "";
  memcpy(text, piece->as.text, piece->count < 63 ? (size_t)piece->count : 63);
  if (strstr(text, " R[1] 1.0")) return Number(result, 0);
  if (strstr(text, " R[1] 0")) return Fault(result, "no reals");
  if (strstr(text, "PR[1]")) {
    result->kind = ORVEX_BOOLEAN;
    result->as.boolean = -1;
    return 0;
  }
  if (strstr(text, "POS")) return 0;
  if (strstr(text, "SR[1]")) return Refuse(result, "\033[31mno\a texts");
  if (strstr(text, "PRG")) {
    result->kind = 77;
    return 0;
  }
  result->kind = ORVEX_R8;
  result->as.r8 = 1e300;
  return 0;
}

/* Leaves out the last word, and writes two behind it. */
static int32_t ReadWords(const OrvexValue* a, OrvexValue* result) {
  const int16_t count = a[2].as.i2;
  if (Has("zero")) return Number(result, 0);
  if (Has("refusal")) return Refuse(result, "not today");
  if (count < 0) return Fault(result, "negative");
  for (int i = 0; i < count + 2; ++i) {
    if (i != count - 1) a[1].as.i2Ref[i] = (int16_t)i;
  }
  return Number(result, 1);
}

static int32_t Invoke(void* object, int32_t id, uint16_t call, const OrvexValue* a, int32_t count,
                      OrvexValue* result) {
  (void)object, (void)count;
  switch (id) {
    case 2: /* TimeOutValue, which Reset changes */
      return Number(result, 1000 + resets);
    case 3:
      return call == ORVEX_PUT ? Fault(result, "read only") : Text(result, "8193", 4);
    case 9:
      return Refuse(result, "busy");
    case 11:
      if (Has("connect")) return Refuse(result, "\033[31mcable");
      return Has("nothing") ? 0 : Number(result, 0);
    case 13:
      return Assign(a, result);
    case 27:
      a[1].as.i2Ref[0] = 7;
      return Number(result, 0);
    case 29: /* ReadSDI, which says that it has read */
      if (Has("end")) _Exit(7);
      return Number(result, 0);
    case 31: /* ReadRDI, which takes bits for numbers of 32 bits */
      if (a[2].as.i2 > 0 && a[0].as.i2 > 0) memset(a[1].as.i2Ref, 0, 4);
      return a[0].as.i2 > 0 ? Number(result, 0) : Refuse(result, "no such signal");
    case 33: /* ReadUI, with a fault for what does not exist */
      if (a[0].as.i2 != 1) return Fault(result, "no such signal");
      if (a[2].as.i2 > 0) a[1].as.i2Ref[0] = 1;
      return Number(result, 0);
    case 43: /* ReadGI, which does not look at the count */
      if (a[0].as.i2 != 1) return Refuse(result, "no such signal");
      a[1].as.i4Ref[0] = 5;
      return Number(result, 0);
    case 56:
      return ReadWords(a, result);
    case 58: /* ShortToFloat */
      reason = "converted";
      a->as.i2Ref[0] = 0;
      return Number(result, ++conversions);
    case 64:
      if (Has("text")) return Fault(result, "no texts");
      if (Has("number")) return Number(result, 5);
      if (Has("length")) return Text(result, reason, 1 << 30);
      if (Has("nowhere")) return Text(result, NULL, 5);
      return Text(result, reason, (int32_t)strlen(reason) + 1);
    case 65:
      ++resets;
      return 0;
    case 1:
    case 12:
    case 62:
      return 0;
    default:
      return Fault(result, "Unknown \033operation");
  }
}

const OrvexCommLib* OrvexCommLibEntry(uint32_t version) {
  static const OrvexCommLib table = {ORVEX_COMMLIB_VERSION, Create, Release, Lookup, Invoke};
  return version == ORVEX_COMMLIB_VERSION ? &table : NULL;
}
