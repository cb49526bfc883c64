#include "app/instance/starttokens.h"

StartTokens StartTokens::fromEnvironment()
{
    return {qEnvironmentVariable("XDG_ACTIVATION_TOKEN"),
            qEnvironmentVariable("DESKTOP_STARTUP_ID")};
}
