#ifndef BCM_ERROR_H
#define BCM_ERROR_H

#pragma GCC visibility push(default)
extern "C" {

/// Status codes of the chip SDK: 0 or positive is success, negative one of these.
enum bcm_error_t : int {
  BCM_E_NONE = 0,
  BCM_E_INTERNAL = -1,
  BCM_E_MEMORY = -2,
  BCM_E_UNIT = -3,
  BCM_E_PARAM = -4,
  BCM_E_EMPTY = -5,
  BCM_E_FULL = -6,
  BCM_E_NOT_FOUND = -7,
  BCM_E_EXISTS = -8,
  BCM_E_TIMEOUT = -9,
  BCM_E_BUSY = -10,
  BCM_E_FAIL = -11,
  BCM_E_DISABLED = -12,
  BCM_E_BADID = -13,
  BCM_E_RESOURCE = -14,
  BCM_E_CONFIG = -15,
  BCM_E_UNAVAIL = -16,
  BCM_E_INIT = -17,
  BCM_E_PORT = -18,
};

/// The text of status `rv` is entry -rv; entry 19 is the text of every status that is not listed. At least 20 entries.
extern const char* const _shr_errmsg[];
}
#pragma GCC visibility pop

#endif
