#include "bcm/error.h"

const char* const _shr_errmsg[] = {
    "Success",
    "Internal error",
    "Out of memory",
    "Invalid unit",
    "Invalid parameter",
    "Table empty",
    "Table full",
    "No such entry",
    "Entry exists",
    "Timed out",
    "Busy",
    "Operation failed",
    "Disabled",
    "Invalid identifier",
    "Out of resources",
    "Invalid configuration",
    "Unavailable",
    "Not initialised",
    "No such port",
    "Unknown error",
};
