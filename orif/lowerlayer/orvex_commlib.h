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

/** The version of this interface. It is raised with every change; library and component must agree
 * exactly. */
#define ORVEX_COMMLIB_VERSION 2u

/** The name under which a component exports its entry point, an OrvexCommLibEntryFunction. */
#define ORVEX_COMMLIB_ENTRY "OrvexCommLibEntry"

/** What an OrvexValue holds. The numbers are those of automation. */
enum OrvexKind {
  ORVEX_EMPTY = 0,     /**< no value */
  ORVEX_I2 = 2,        /**< 16-bit signed integer */
  ORVEX_I4 = 3,        /**< 32-bit signed integer */
  ORVEX_R4 = 4,        /**< 32-bit real */
  ORVEX_R8 = 5,        /**< 64-bit real */
  ORVEX_TEXT = 8,      /**< bytes of the system's narrow code page */
  ORVEX_BOOLEAN = 11,  /**< -1 true, 0 false */
  ORVEX_BYREF = 0x4000 /**< added to the others for a reference */
};

/** How an operation is invoked. */
enum OrvexCall {
  ORVEX_METHOD = 1, /**< an operation with any arguments */
  ORVEX_GET = 2,    /**< reads a property; no argument */
  ORVEX_PUT = 4     /**< sets a property; one argument */
};

/** One argument or result.
 *
 * By value: i2, i4, r4, r8, boolean, or text with `count` bytes (not ended by a zero byte). By
 * reference: the pointer of the kind, and in `count` how many elements may be read or written from
 * there on: 1 for a single variable, more for the rest of a buffer. A text by reference is read,
 * never written. Nothing that an argument points at may be used after the call has returned. */
typedef struct OrvexValue {
  uint16_t kind;     /**< an OrvexKind, with ORVEX_BYREF added for a reference */
  uint16_t reserved; /**< 0 */
  int32_t count;     /**< bytes of a text, elements behind a reference, else 0 */
  union {
    int16_t i2;       /**< of ORVEX_I2 */
    int32_t i4;       /**< of ORVEX_I4 */
    float r4;         /**< of ORVEX_R4 */
    double r8;        /**< of ORVEX_R8 */
    int16_t boolean;  /**< of ORVEX_BOOLEAN */
    const char* text; /**< of ORVEX_TEXT, by value and by reference */
    int16_t* i2Ref;   /**< of ORVEX_I2 by reference */
    int32_t* i4Ref;   /**< of ORVEX_I4 by reference */
    float* r4Ref;     /**< of ORVEX_R4 by reference */
  } as;               /**< the value; which member counts depends on `kind` */
} OrvexValue;

/** The functions of a component. `object` is its own handle of one core object.
 *
 * Calls on one object come one at a time, but not always from the same thread. Calls on different
 * objects may come at once, and so may create and the entry point.
 *
 * A text in *result belongs to the component and stays as it is until the next call on the object;
 * a text in *fault of create stays until the next create on the same thread. */
typedef struct OrvexCommLib {
  /** ORVEX_COMMLIB_VERSION. */
  uint32_t version;

  /** Makes a core object. Returns null on failure, with the reason in *fault as a text. */
  void* (*create)(OrvexValue* fault);

  /** Ends a core object. Called once for each, never during one of its calls. */
  void (*release)(void* object);

  /** Looks up the number of a named operation. Returns 0 with the number in *id, or anything else
   * if the name is unknown. */
  int32_t (*lookup)(void* object, const char* name, int32_t* id);

  /** Carries out an operation; `call` is an OrvexCall. Returns 0 with the result in *result (empty
   * if there is none), or anything else with the description of the failure in *result as a text. A
   * refusal by the controller is no failure here: it is a status in the result. */
  int32_t (*invoke)(void* object, int32_t id, uint16_t call, const OrvexValue* arguments,
                    int32_t count, OrvexValue* result);
} OrvexCommLib;

/** The entry point. Returns the table for the wanted version, or null if the component does not
 * serve that. The table lives as long as the component is loaded, which is until the process ends.
 */
typedef const OrvexCommLib* (*OrvexCommLibEntryFunction)(uint32_t version);

#ifdef __cplusplus
}
#endif
/* NOLINTEND(modernize-deprecated-headers, modernize-use-using) */

#endif
