#include "tests/signutils/c_unit.h"

#include <stddef.h>
#include <stdio.h>

/* Hosts of other languages describe the records by hand, so each place in them is a promise. */

#define PLACE(record, field, expected)                                                             \
    _Static_assert(offsetof(record, field) == (expected), #record "." #field " has moved")

PLACE(SignUtilsCheck, size, 0);
PLACE(SignUtilsCheck, ran, 4);
PLACE(SignUtilsCheck, rulesComplete, 8);
PLACE(SignUtilsCheck, lookupsComplete, 12);
PLACE(SignUtilsCheck, amountsKnown, 16);
PLACE(SignUtilsCheck, verdict, 20);
PLACE(SignUtilsCheck, totalAmount, 24);
PLACE(SignUtilsCheck, maxOrderAmount, 32);
PLACE(SignUtilsCheck, orderCount, 40);
PLACE(SignUtilsCheck, rowsDue, 44);
PLACE(SignUtilsCheck, rowsWritten, 48);
PLACE(SignUtilsCheck, journal, 52);
PLACE(SignUtilsCheck, report, 56);
PLACE(SignUtilsCheck, reportFileId, 60);
PLACE(SignUtilsCheck, problem, 64);
PLACE(SignUtilsCheck, amountsProblem, 72);
PLACE(SignUtilsCheck, currency, 80);
PLACE(SignUtilsCheck, reasonCode, 88);
PLACE(SignUtilsCheck, reasonText, 96);
PLACE(SignUtilsCheck, reportProblem, 104);
_Static_assert(sizeof(SignUtilsCheck) == 112, "SignUtilsCheck grows at its end, on purpose only");

PLACE(SignUtilsHolder, size, 0);
PLACE(SignUtilsHolder, found, 4);
PLACE(SignUtilsHolder, notOpposition, 8);
PLACE(SignUtilsHolder, certificate, 16);
PLACE(SignUtilsHolder, firstName, 24);
PLACE(SignUtilsHolder, lastName, 32);
_Static_assert(sizeof(SignUtilsHolder) == 40, "SignUtilsHolder grows at its end, on purpose only");

PLACE(SignUtilsAmounts, size, 0);
PLACE(SignUtilsAmounts, orderCount, 4);
PLACE(SignUtilsAmounts, totalAmount, 8);
PLACE(SignUtilsAmounts, maxOrderAmount, 16);
PLACE(SignUtilsAmounts, currency, 24);
PLACE(SignUtilsAmounts, errors, 32);
_Static_assert(sizeof(SignUtilsAmounts) == 40,
               "SignUtilsAmounts grows at its end, on purpose only");

PLACE(SignUtilsHandOff, size, 0);
PLACE(SignUtilsHandOff, result, 4);
PLACE(SignUtilsHandOff, fileId, 8);
PLACE(SignUtilsHandOff, errorCode, 12);
PLACE(SignUtilsHandOff, systemCode, 16);
_Static_assert(sizeof(SignUtilsHandOff) == 24,
               "SignUtilsHandOff grows at its end, on purpose only");

_Static_assert(sizeof(SignUtilsStatus) == 4, "a status has 32 bits");

static SignUtilsStatus SetUp(SignUtilsSession* session, const char* connexionString, double total)
{
    SignUtilsStatus status = SignUtilsSetConnexionString(session, connexionString);
    if (status == SIGNUTILS_OK)
    {
        status =
            SignUtilsSetContractInfo(session, 1u, 9u, "PARTNER1", "SERVICE1", "CLIENT1", 1, NULL);
    }
    if (status == SIGNUTILS_OK)
    {
        status = SignUtilsSetAmountInfo(session, total, total, "EUR");
    }
    return status;
}

static SignUtilsStatus Judge(SignUtilsSession* session, const char* signers, CUnitResult* result)
{
    SignUtilsCheck check = {0};
    SignUtilsStatus status =
        SignUtilsCheckSignRules(session, "order.xml", signers, &result->verdict);
    if (status != SIGNUTILS_OK)
    {
        return status;
    }
    check.size = (uint32_t)sizeof check;
    status = SignUtilsGetLastCheck(session, &check);
    result->ran = check.ran;
    (void)snprintf(result->reasonCode, sizeof result->reasonCode, "%s", check.reasonCode);
    return status;
}

SignUtilsStatus CUnitJudge(const char* connexionString, const char* signers, double totalAmount,
                           CUnitResult* result)
{
    SignUtilsSession* session = NULL;
    SignUtilsStatus status = SignUtilsCreate(NULL, NULL, &session);
    if (status == SIGNUTILS_OK)
    {
        status = SetUp(session, connexionString, totalAmount);
    }
    if (status == SIGNUTILS_OK)
    {
        status = Judge(session, signers, result);
    }
    (void)snprintf(result->error, sizeof result->error, "%s", SignUtilsErrorText(session));
    SignUtilsDestroy(session);
    return status;
}
