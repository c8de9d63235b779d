#pragma once

#define BCM_E_NONE 0
#define BCM_E_PARAM (-4)
#define BCM_E_NOT_FOUND (-7)
#define BCM_E_UNAVAIL (-16)
#define BCM_E_PORT (-18)

#ifdef __cplusplus
extern "C"
#endif
    const char* const _shr_errmsg[24];

#define bcm_errmsg(rv) (_shr_errmsg[(rv) <= 0 && (rv) > -24 ? -(rv) : 19])
