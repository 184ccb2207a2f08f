// Ends with an access violation, so that a run of the suite shows that a crash counts as a failure.

#include <cstdio>

int main()
{
    std::puts("about to crash");
    std::fflush(stdout);
    volatile int* volatile nowhere = nullptr;
    *nowhere = 1;
    return 0;
}
