// Version record and the floating-point mode entry points of this build.
#include "core/internal.hpp"

namespace {

const orvLibraryVersion kVersion = {
    1, 1, 11, 31, {'p', 'x', '\0', '\0'}, "orvspx", "v1.1", "Aug  7 2001",
};

}  // namespace

extern "C" {

const orvLibraryVersion* orvsGetLibVersion(void) { return &kVersion; }

// This build runs on plain x87 arithmetic and offers neither mode: the
// arguments are not read and no processor state changes.
orvStatus orvsSetFlushToZero(int, orv32u*) { return orvErrCpuNotSupported; }
orvStatus orvsSetDenormAreZeros(int) { return orvErrCpuNotSupported; }

}  // extern "C"
