#pragma once

#include <cstddef>
#include <cstdint>

// What the fuzz targets have in common. libFuzzer calls LLVMFuzzerTestOneInput with one input after
// the other, each a change of one that reached new code.

/// Is thrown where the program would end: in a target that is a result like any other.
struct FatalError {
};

/// Ends the target, as a crash does, unless @p isMet; says @p what had to be.
void expect(bool isMet, const char *what);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);
