/* A host in C that judges one order file:
 *
 *   judge <connection string> <order file> <signer>...
 *
 * With CMake:      find_package(SignUtils), target SignUtils::SignUtils
 * With pkg-config: cc -std=c11 judge.c $(pkg-config --cflags --libs signutils) -o judge
 *
 * Arguments are passed on as they are, so they must be UTF-8: on Windows a host has them as wide
 * texts and converts them first. */

#include "signutils/signutils_c.h"

#include <stdio.h>
#include <stdlib.h>
#include <string.h>

enum
{
    EXIT_ACCEPTED = 0,
    EXIT_REFUSED = 1,
    EXIT_NOT_JUDGED = 3,
    EXIT_USAGE = 64
};

/* The signers joined by ';'; null when there is no memory. */
static char* JoinSigners(int count, char** signers)
{
    size_t size = 1;
    for (int i = 0; i < count; ++i)
    {
        size += strlen(signers[i]) + 1;
    }
    char* const joined = calloc(size, 1);
    for (int i = 0; joined != NULL && i < count; ++i)
    {
        strcat(joined, signers[i]);
        strcat(joined, ";");
    }
    return joined;
}

static SignUtilsStatus SetUp(SignUtilsSession* session, const char* connexionString)
{
    SignUtilsStatus status = SignUtilsSetConnexionString(session, connexionString);
    if (status == SIGNUTILS_OK)
    {
        status =
            SignUtilsSetContractInfo(session, 1, 9, "PARTNER1", "SERVICE1", "CLIENT1", 1, NULL);
    }
    if (status == SIGNUTILS_OK)
    {
        status = SignUtilsSetMessageInfo(session, "BANKFRPP", "ORDER0001", "pain.001.001.03",
                                         "STATUS-0001");
    }
    if (status == SIGNUTILS_OK)
    {
        status = SignUtilsSetAmountInfo(session, 950.00, 400.00, "EUR");
    }
    return status;
}

/* The verdict alone is not enough: see what it rests on. */
static int Tell(const char* file, const SignUtilsCheck* check)
{
    if (!check->ran || !check->rulesComplete || !check->lookupsComplete || !check->amountsKnown)
    {
        fprintf(stderr, "not judged: %s\n",
                check->problem[0] != '\0' ? check->problem : check->amountsProblem);
        return EXIT_NOT_JUDGED;
    }
    const char* const words = check->verdict == SIGNUTILS_ACCEPTED  ? "accepted"
                              : check->verdict == SIGNUTILS_REFUSED ? "refused"
                                                                    : "no rule";
    printf("%s: %s %s\n", file, words, check->reasonCode);
    return check->verdict == SIGNUTILS_ACCEPTED ? EXIT_ACCEPTED : EXIT_REFUSED;
}

static int Judge(SignUtilsSession* session, const char* connexionString, const char* file,
                 const char* signers)
{
    uint32_t verdict = SIGNUTILS_REFUSED;
    SignUtilsCheck check = {.size = sizeof check};
    SignUtilsStatus status = SetUp(session, connexionString);
    if (status == SIGNUTILS_OK)
    {
        status = SignUtilsCheckSignRules(session, file, signers, &verdict);
    }
    if (status == SIGNUTILS_OK)
    {
        status = SignUtilsGetLastCheck(session, &check);
    }
    if (status != SIGNUTILS_OK)
    {
        fprintf(stderr, "not judged: %s\n", SignUtilsErrorText(session));
        return EXIT_NOT_JUDGED;
    }
    return Tell(file, &check);
}

int main(int argc, char** argv)
{
    if (argc < 4)
    {
        fputs("usage: judge <connection string> <order file> <signer>...\n", stderr);
        return EXIT_USAGE;
    }
    SignUtilsSession* session = NULL;
    if (SignUtilsCreate(NULL, NULL, &session) != SIGNUTILS_OK)
    {
        fprintf(stderr, "not judged: %s\n", SignUtilsErrorText(NULL));
        return EXIT_NOT_JUDGED;
    }
    char* const signers = JoinSigners(argc - 3, argv + 3);
    const int result =
        signers == NULL ? EXIT_NOT_JUDGED : Judge(session, argv[1], argv[2], signers);
    free(signers);
    SignUtilsDestroy(session);
    return result;
}
