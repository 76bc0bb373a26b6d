/* Compiled with -std=c99 -pedantic -Werror: the header is plain C. */
#include "orvspx.h"

int orvspx_header_c99_probe(void) {
  orv16sc v = {1, 2};
  return v.re + v.im + (int)sizeof(orvLibraryVersion) + orvOk;
}
