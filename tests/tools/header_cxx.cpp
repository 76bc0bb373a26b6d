// Compiled with -pedantic -Werror: the header is clean C++ as well.
#include "orvspx.h"

int orvspx_header_cxx_probe() {
  orv32fc v = {1.0f, 2.0f};
  return static_cast<int>(v.re + v.im) + orvErrSize;
}
