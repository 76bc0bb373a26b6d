/*
 * A tour of orvspx. Each section prints what it does and checks its own
 * results; the program exits 0 only if every check holds.
 */
#include <math.h>
#include <stdio.h>
#include <string.h>

#include "orvspx.h"

static int failures = 0;

static void check(int ok, const char* what) {
  printf("  [%s] %s\n", ok ? " ok " : "FAIL", what);
  if (!ok) ++failures;
}

static void section(const char* title) { printf("\n== %s ==\n", title); }

static void demo_version(void) {
  const orvLibraryVersion* v = orvsGetLibVersion();
  section("Library version");
  printf("  %s %s (%d.%d.%d.%d), code variant \"%s\", built %s\n", v->name, v->version,
         v->major, v->minor, v->majorBuild, v->build, v->targetCpu, v->buildDate);
  check(v == orvsGetLibVersion(), "the version record is one constant record");
}

static void demo_status(void) {
  static const orvStatus codes[] = {orvOk, orvErrNullPointer, orvErrSize, orvWarnDivByZero,
                                    orvErrCpuNotSupported, 12345};
  size_t i;
  section("Status texts");
  for (i = 0; i < sizeof codes / sizeof codes[0]; ++i)
    printf("  %6d  %s\n", codes[i], orvGetStatusString(codes[i]));
  check(orvsSetFlushToZero(1, NULL) == orvErrCpuNotSupported,
        "flush-to-zero is not offered by this build");
}

static void demo_memory(void) {
  enum { N = 10 };
  orv32f* a = orvsMalloc_32f(N);
  orv32f* b = orvsMalloc_32f(N);
  orv16s* s = orvsMalloc_16s(N);
  int i, ok;
  section("Memory, fill, copy and flip");
  if (!a || !b || !s) {
    check(0, "allocation of three small vectors");
    orvsFree(a);
    orvsFree(b);
    orvsFree(s);
    return;
  }
  printf("  three vectors at %p, %p, %p\n", (void*)a, (void*)b, (void*)s);
  check(((size_t)a % 32) == 0 && ((size_t)b % 32) == 0 && ((size_t)s % 32) == 0,
        "every block starts on a 32-byte boundary");
  check(orvsMalloc_8u(0) == NULL, "a request for 0 elements gives null");

  for (i = 0; i < N; ++i) a[i] = (orv32f)i * 1.5f;
  orvsCopy_32f(a, b, N);
  check(memcmp(a, b, sizeof(orv32f) * N) == 0, "orvsCopy_32f copies all ten elements");
  orvsFlip_32f_I(b, N);
  printf("  flipped:");
  for (i = 0; i < N; ++i) printf(" %g", b[i]);
  printf("\n");
  for (ok = 1, i = 0; i < N; ++i) ok &= b[i] == a[N - 1 - i];
  check(ok, "orvsFlip_32f_I reverses the order");
  orvsSet_16s(-7, s, N);
  orvsZero_16s(s + 5, 5);
  printf("  set then half zeroed:");
  for (i = 0; i < N; ++i) printf(" %d", s[i]);
  printf("\n");
  check(s[4] == -7 && s[5] == 0, "orvsSet_16s and orvsZero_16s fill their ranges");
  check(orvsCopy_32f(a, NULL, N) == orvErrNullPointer && orvsCopy_32f(a, b, 0) == orvErrSize,
        "bad arguments give orvErrNullPointer, then orvErrSize");
  orvsFree(a);
  orvsFree(b);
  orvsFree(s);
}

static void demo_spectrum(void) {
  enum { ORDER = 10, N = 1 << ORDER, TONE = 37 };
  orvsFFTContext* fft = NULL;
  orv64fc* x = orvsMalloc_64fc(N);
  orv64fc* spectrum = orvsMalloc_64fc(N);
  int i, peak = 0;
  double best = 0.0;
  section("Spectrum");
  /* a complex tone of amplitude 0.5 on bin 37 */
  for (i = 0; i < N; ++i) {
    const double phase = 2.0 * 3.14159265358979323846 * TONE * i / N;
    x[i].re = 0.5 * cos(phase);
    x[i].im = 0.5 * sin(phase);
  }
  check(orvsFFTInitAlloc_C_64fc(&fft, ORDER, orvScaleForward, 0) == orvOk,
        "orvsFFTInitAlloc_C_64fc makes a context of order 10, scaled by 1/N forward");
  orvsFFTFwd_CToC_64fc(x, spectrum, fft, NULL);
  for (i = 0; i < N; ++i) {
    const double m = sqrt(spectrum[i].re * spectrum[i].re + spectrum[i].im * spectrum[i].im);
    if (m > best) {
      best = m;
      peak = i;
    }
  }
  printf("  peak at bin %d, magnitude %.6f\n", peak, best);
  check(peak == TONE && fabs(best - 0.5) < 1e-12, "the tone's bin holds its amplitude");
  orvsFFTFree_C_64fc(fft);
  orvsFree(x);
  orvsFree(spectrum);
}

int main(void) {
  demo_version();
  demo_status();
  demo_memory();
  demo_spectrum();
  printf("\n%s: %d failed check(s)\n", failures ? "DEMO FAILED" : "demo ok", failures);
  return failures ? 1 : 0;
}
