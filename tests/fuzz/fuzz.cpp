#include "fuzz.h"

#include "model/fatalerror.h"

#include <cstdio>
#include <cstdlib>

void expect(bool isMet, const char *what)
{
    if (isMet)
        return;
    std::fprintf(stderr, "It does not hold that %s\n", what);
    std::abort();
}

void fatalError(const char *, const std::string &)
{
    throw FatalError();
}

void setFatalErrorRescue(std::function<void()>) {}
