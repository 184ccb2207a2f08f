#pragma once

// A host written in C, compiled with strict warnings.

#include "signutils/signutils_c.h"

#if defined(__cplusplus)
extern "C"
{
#endif

    typedef struct CUnitResult
    {
        uint32_t verdict;
        int32_t ran;
        char reasonCode[8];
        char error[256];
    } CUnitResult;

    /// Judges one order of the fixture's contract.
    SignUtilsStatus CUnitJudge(const char* connexionString, const char* signers, double totalAmount,
                               CUnitResult* result);

#if defined(__cplusplus)
}
#endif
