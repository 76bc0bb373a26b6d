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

static void demo_scaled_16s(void) {
  /* Two 16-bit signals whose sum leaves the 16-bit range. */
  static const orv16s a[6] = {32767, -32768, 1000, 3, -3, 5};
  static const orv16s b[6] = {32767, -32768, -250, 0, 0, 0};
  orv16s sum[6], half[6], diff[6];
  int i;
  section("Saturating, scaled 16-bit arithmetic");
  orvsAdd_16s_Sfs(a, b, sum, 6, 0);  /* saturates */
  orvsAdd_16s_Sfs(a, b, half, 6, 1); /* (a + b) / 2, rounded to even */
  orvsSub_16s_Sfs(b, a, diff, 6, 0); /* note the order: a - b */
  printf("  %8s %8s | %8s %8s %8s\n", "a", "b", "a+b", "(a+b)/2", "a-b");
  for (i = 0; i < 6; ++i) printf("  %8d %8d | %8d %8d %8d\n", a[i], b[i], sum[i], half[i], diff[i]);
  check(sum[0] == 32767 && sum[1] == -32768, "sums beyond the range saturate");
  check(half[0] == 32767 && half[1] == -32768 && half[2] == 375, "scale 1 halves the exact sum");
  check(half[3] == 2 && half[4] == -2 && half[5] == 2, "halves round to the even neighbour");
  check(diff[2] == 1250, "orvsSub_16s_Sfs(src1, src2, ...) delivers src2 - src1");
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

/* Level of one tone in a 16-bit signal: the magnitude of its correlation with
 * that frequency, as an amplitude. */
static double tone_level(const orv16s* x, int n, double cycles_per_sample) {
  double c = 0.0, s = 0.0;
  int i;
  for (i = 0; i < n; ++i) {
    const double phase = 2.0 * 3.14159265358979323846 * cycles_per_sample * i;
    c += x[i] * cos(phase);
    s += x[i] * sin(phase);
  }
  return 2.0 * sqrt(c * c + s * s) / n;
}

static void demo_fir(void) {
  enum { TAPS = 63, N = 4096, SKIP = TAPS };
  const double low = 0.01, high = 0.3, cutoff = 0.1; /* cycles per sample */
  orv32f taps[TAPS];
  orv16s* x = orvsMalloc_16s(N);
  orv16s* y = orvsMalloc_16s(N);
  orvsFIRState* fir = NULL;
  double sum = 0.0, before[2], after[2];
  int i;
  section("FIR low-pass filter");
  if (!x || !y) {
    check(0, "allocation of the signal");
    orvsFree(x);
    orvsFree(y);
    return;
  }
  /* A windowed-sinc low-pass, normalised to a gain of 1 at 0 Hz. */
  for (i = 0; i < TAPS; ++i) {
    const double m = i - (TAPS - 1) / 2.0;
    const double sinc = m == 0.0 ? 2.0 * cutoff
                                 : sin(2.0 * 3.14159265358979323846 * cutoff * m) /
                                       (3.14159265358979323846 * m);
    const double hamming = 0.54 - 0.46 * cos(2.0 * 3.14159265358979323846 * i / (TAPS - 1));
    taps[i] = (orv32f)(sinc * hamming);
    sum += taps[i];
  }
  for (i = 0; i < TAPS; ++i) taps[i] = (orv32f)(taps[i] / sum);
  /* Two tones of amplitude 8000: one in the pass band, one in the stop band. */
  for (i = 0; i < N; ++i)
    x[i] = (orv16s)floor(8000.0 * sin(2.0 * 3.14159265358979323846 * low * i) +
                         8000.0 * sin(2.0 * 3.14159265358979323846 * high * i) + 0.5);
  check(orvsFIRInitAlloc32f_16s(&fir, taps, TAPS, NULL) == orvOk,
        "orvsFIRInitAlloc32f_16s makes a 63-tap filter (an FFT path for long blocks)");
  check(orvsFIR32f_16s_Sfs(x, y, N / 2, fir, 0) == orvOk &&
            orvsFIR32f_16s_Sfs(x + N / 2, y + N / 2, N / 2, fir, 0) == orvOk,
        "orvsFIR32f_16s_Sfs filters the signal in two blocks");
  /* Levels over the part where the filter has filled its delay line. */
  before[0] = tone_level(x + SKIP, N - SKIP, low);
  before[1] = tone_level(x + SKIP, N - SKIP, high);
  after[0] = tone_level(y + SKIP, N - SKIP, low);
  after[1] = tone_level(y + SKIP, N - SKIP, high);
  printf("  tone at %.2f: %7.1f before, %7.1f after\n", low, before[0], after[0]);
  printf("  tone at %.2f: %7.1f before, %7.1f after\n", high, before[1], after[1]);
  check(fabs(after[0] - before[0]) < 0.01 * before[0], "the pass-band tone keeps its level");
  check(after[1] < 0.001 * before[1], "the stop-band tone drops by more than 60 dB");
  orvsFIRFree32f_16s(fir);
  orvsFree(x);
  orvsFree(y);
}

int main(void) {
  demo_version();
  demo_status();
  demo_memory();
  demo_scaled_16s();
  demo_spectrum();
  demo_fir();
  printf("\n%s: %d failed check(s)\n", failures ? "DEMO FAILED" : "demo ok", failures);
  return failures ? 1 : 0;
}
