#include "model/fatalerror.h"

#include <cstdio>
#include <cstdlib>
#include <utility>

namespace
{
std::function<void()> &rescueAction()
{
    static std::function<void()> action;
    return action;
}
} // namespace

void setFatalErrorRescue(std::function<void()> rescue)
{
    rescueAction() = std::move(rescue);
}

void fatalError(const char *message, const std::string &advice)
{
    // The rescue is taken out first, so that one that fails fatally itself does not start over.
    if (const auto rescue = std::exchange(rescueAction(), {}))
        rescue();
    std::fprintf(stderr, "%s\n", message);
    if (!advice.empty())
        std::fprintf(stderr, "%s\n", advice.c_str());
    std::fflush(nullptr);
    // exit() would destroy windows and store, which may be in the middle of something.
    std::_Exit(EXIT_FAILURE);
}
