/* The interface between orif and a loadable lower communication component: one entry point that
 * hands out a table of four functions. It is plain C, so that a component built by another compiler
 * works. The operations, their numbers and their arguments are described in docs/lower-layer.md. */
#ifndef ORVEX_COMMLIB_H
#define ORVEX_COMMLIB_H

/* NOLINTBEGIN(modernize-deprecated-headers, modernize-use-using): C */
#include <stdint.h>

#ifdef __cplusplus
extern "C" {
#endif

/** Raised whenever anything in this header changes; library and component must agree exactly. */
#define ORVEX_COMMLIB_VERSION 2u

/** The name under which a component exports its OrvexCommLibEntry. */
#define ORVEX_COMMLIB_ENTRY "OrvexCommLibEntry"

/** What an OrvexValue holds: the automation codes. ORVEX_BYREF is added to a kind for a reference.
 */
enum OrvexKind {
  ORVEX_EMPTY = 0,
  ORVEX_I2 = 2,
  ORVEX_I4 = 3,
  ORVEX_R4 = 4,
  ORVEX_R8 = 5,
  ORVEX_TEXT = 8,
  ORVEX_BOOLEAN = 11,
  ORVEX_BYREF = 0x4000
};

/** How an operation is invoked. */
enum OrvexCall { ORVEX_METHOD = 1, ORVEX_GET = 2, ORVEX_PUT = 4 };

/** One argument or result.
 *
 * By value: i2, i4, r4, r8, boolean (-1 true, 0 false), or text with `count` bytes (not ended by a
 * zero byte). By reference: the pointer of the kind, and in `count` how many elements may be read
 * or written from there on; 1 for a single variable, more for the rest of a buffer. A text by
 * reference is the caller's own variable: it is read, never written. Nothing that an argument
 * points at may be used after the call has returned. */
typedef struct OrvexValue {
  uint16_t kind;     /**< an OrvexKind, with ORVEX_BYREF added for a reference */
  uint16_t reserved; /**< 0 */
  int32_t count;     /**< bytes of a text, elements behind a reference, else 0 */
  union {
    int16_t i2;
    int32_t i4;
    float r4;
    double r8;
    int16_t boolean;
    const char* text;
    int16_t* i2Ref;
    int32_t* i4Ref;
    float* r4Ref;
  } as; /**< the member of the kind */
} OrvexValue;

/** What a component offers. `object` is the component's own handle of one core object.
 *
 * Calls on one object come one at a time, not always from the same thread. Calls on different
 * objects may come at once, and so may create and the entry point.
 *
 * A text in *result belongs to the component and stays as it is until the next call on the object;
 * a text in *fault of create does too, until the next create on the same thread. */
typedef struct OrvexCommLib {
  /** ORVEX_COMMLIB_VERSION */
  uint32_t version;

  /** Makes a core object; null on failure, with the reason in *fault as a text. */
  void* (*create)(OrvexValue* fault);

  /** Ends it; called once per object, never during one of its calls. */
  void (*release)(void* object);

  /** Gives the number of a named operation; 0 found, anything else unknown. */
  int32_t (*lookup)(void* object, const char* name, int32_t* id);

  /** Carries out an operation; 0 done with its result in *result (empty where it has none),
   * anything else failed with the description in *result as a text. A refusal by the controller is
   * not a failure here: it is a status in the result. */
  int32_t (*invoke)(void* object, int32_t id, uint16_t call, const OrvexValue* arguments,
                    int32_t count, OrvexValue* result);
} OrvexCommLib;

/** The entry point: the table for the wanted version, or null when the component cannot serve it.
 * The table lives as long as the component is loaded, which is until the process ends. */
typedef const OrvexCommLib* (*OrvexCommLibEntryFunction)(uint32_t version);

#ifdef __cplusplus
}
#endif
/* NOLINTEND(modernize-deprecated-headers, modernize-use-using) */

#endif
