/* A minimal program built against an installed orvspx. */
#include <stdio.h>
#include <string.h>
#include <orvspx.h>

int main(void) {
  const orvLibraryVersion* v = orvsGetLibVersion();
  orv16s* buf = orvsMalloc_16s(8);
  int ok = v != NULL && strcmp(v->name, "orvspx") == 0 && buf != NULL &&
           orvsSet_16s(7, buf, 8) == orvOk && buf[7] == 7;
  orvsFree(buf);
  printf("consumer: %s %s\n", v->name, ok ? "ok" : "FAILED");
  return ok ? 0 : 1;
}
