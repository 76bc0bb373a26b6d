/*
 * orvspx: signal-processing primitives on one-dimensional vectors.
 *
 * The one public header of the library. Plain C; usable from C99 and C++.
 * Every function returns an orvStatus (0 success, > 0 warning, < 0 error)
 * unless it says otherwise; vectors are plain arrays with an element count.
 */
#ifndef ORVSPX_H
#define ORVSPX_H

#include <stdint.h>

#if defined(_WIN32)
#  if defined(ORVSPX_BUILDING)
#    define ORV_API __declspec(dllexport)
#  else
#    define ORV_API
#  endif
#elif defined(__GNUC__)
#  define ORV_API __attribute__((visibility("default")))
#else
#  define ORV_API
#endif

#ifdef __cplusplus
extern "C" {
#endif

/* ---- Element types ---------------------------------------------------- */

typedef uint8_t  orv8u;
typedef int8_t   orv8s;
typedef uint16_t orv16u;
typedef int16_t  orv16s;
typedef uint32_t orv32u;
typedef int32_t  orv32s;
typedef int64_t  orv64s;
typedef float    orv32f;
typedef double   orv64f;

/* Complex pairs: re then im, nothing between them. */
typedef struct { orv8s  re; orv8s  im; } orv8sc;
typedef struct { orv16s re; orv16s im; } orv16sc;
typedef struct { orv32s re; orv32s im; } orv32sc;
typedef struct { orv64s re; orv64s im; } orv64sc;
typedef struct { orv32f re; orv32f im; } orv32fc;
typedef struct { orv64f re; orv64f im; } orv64fc;

/* ---- Status ------------------------------------------------------------- */

/* 0 is success, a positive value a warning, a negative value an error. */
typedef int orvStatus;

enum {
    orvErrModeNotSupported   = -9999,
    orvErrCpuNotSupported    = -9998,
    orvErrPredictionMode     = -83,
    orvErrStepLessThan8      = -82,
    orvErrStepLessThan16     = -81,
    orvErrFrameWidth         = -80,
    orvErrFrameHeight        = -79,
    orvErrExpandPixels       = -78,
    orvErrPlaneStep          = -77,
    orvErrQuantizer          = -76,
    orvErrHuffmanMv          = -75,
    orvErrHuffmanVlc         = -74,
    orvErrDcStream           = -73,
    orvErrZigzagLength       = -72,
    orvErrFilterBankFreq     = -71,
    orvErrFilterBankParam    = -70,
    orvErrFilterBankInit     = -69,
    orvErrNegativeOccupation = -67,
    orvErrCodebookFlag       = -66,
    orvErrSvdNoConvergence   = -65,
    orvErrJpegHuffmanTable   = -64,
    orvErrJpegDctRange       = -63,
    orvErrJpegMarker         = -62,
    orvErrDrawText           = -61,
    orvErrChannelOrder       = -60,
    orvErrMaskAllZero        = -59,
    orvErrQuadrangle         = -58,
    orvErrRectangle          = -57,
    orvErrTransformCoeffs    = -56,
    orvErrNoiseAmplitude     = -55,
    orvErrDitherLevels       = -54,
    orvErrChannelCount       = -53,
    orvErrCoi                = -52,
    orvErrDivisorZeroAborted = -51,
    orvErrCompositing        = -50,
    orvErrGammaRange         = -49,
    orvErrToGrayCoeffs       = -48,
    orvErrChannelNumber      = -47,
    orvErrToneMagnitude      = -46,
    orvErrToneFrequency      = -45,
    orvErrTonePhase          = -44,
    orvErrTriangleMagnitude  = -43,
    orvErrTriangleFrequency  = -42,
    orvErrTrianglePhase      = -41,
    orvErrTriangleAsymmetry  = -40,
    orvErrKaiserTooHuge      = -39,
    orvErrNegativeMagnitude  = -38,
    orvErrStride             = -37,
    orvErrNegativeEpsilon    = -36,
    orvErrWaveletOffset      = -35,
    orvErrAnchor             = -34,
    orvErrMaskSize           = -33,
    orvErrNegativeShift      = -32,
    orvErrSamplingFactor     = -31,
    orvErrSamplingPhase      = -30,
    orvErrFirMrFactor        = -29,
    orvErrFirMrPhase         = -28,
    orvErrRelativeFrequency  = -27,
    orvErrFirLength          = -26,
    orvErrIirOrder           = -25,
    orvErrDelayLineIndex     = -24,
    orvErrResizeFactor       = -23,
    orvErrInterpolation      = -22,
    orvErrFlipMode           = -21,
    orvErrMomentTooSmall     = -20,
    orvErrThresholdLevel     = -19,
    orvErrThresholdBounds    = -18,
    orvErrContextMismatch    = -17,
    orvErrFftFlag            = -16,
    orvErrFftOrder           = -15,
    orvErrStep               = -14,
    orvErrScaleBounds        = -13,
    orvErrDataType           = -12,
    orvErrOutOfRange         = -11,
    orvErrDivideByZero       = -10,
    orvErrNoMemory           = -9,
    orvErrNullPointer        = -8,
    orvErrBounds             = -7,
    orvErrSize               = -6,
    orvErrBadArgument        = -5,
    orvErrMemoryAlloc        = -4,
    orvErrUnknown            = -2,
    orvOk                    = 0,
    orvWarnNoOperation       = 1,
    orvWarnMisaligned        = 2,
    orvWarnSqrtNegative      = 3,
    orvWarnInvThresholdInf   = 4,
    orvWarnEvenMedianMask    = 5,
    orvWarnDivByZero         = 6,
    orvWarnLnZero            = 7,
    orvWarnLnNegative        = 8,
    orvWarnNaN               = 9,
    orvWarnJpegMarker        = 10,
    orvWarnAllFloored        = 11,
    orvWarnOverflow          = 12,
    orvWarnLpStabilityLow    = 13,
    orvWarnLpStabilityHigh   = 14,
    orvWarnLpStabilityBoth   = 15,
    orvWarnZeroOccupation    = 16
};

/* ---- Constants ---------------------------------------------------------- */

/* Normalisation flag of the FFT and DFT. */
enum {
    orvScaleForward  = 1,
    orvScaleInverse  = 2,
    orvScaleBothSqrt = 4,
    orvScaleNone     = 8
};

/* Rounding mode of the float-to-integer conversions. */
enum {
    orvRndZero = 0,
    orvRndNear = 1
};

/* Comparison of the thresholds. */
enum {
    orvCmpLess    = 0,
    orvCmpGreater = 4
};

/* ---- Opaque contexts and states ---------------------------------------- */

typedef struct orvsFFTContext     orvsFFTContext;
typedef struct orvsDFTContext     orvsDFTContext;
typedef struct orvsDCTContext     orvsDCTContext;
typedef struct orvsFIRState       orvsFIRState;
typedef struct orvsIIRState       orvsIIRState;
typedef struct orvsFIRLMSState    orvsFIRLMSState;
typedef struct orvsWTFwdState     orvsWTFwdState;
typedef struct orvsWTInvState     orvsWTInvState;
typedef struct orvsRandUniState   orvsRandUniState;
typedef struct orvsRandGaussState orvsRandGaussState;

/* ---- Version record ----------------------------------------------------- */

typedef struct {
    int         major;
    int         minor;
    int         majorBuild;
    int         build;
    char        targetCpu[4];
    const char* name;
    const char* version;
    const char* buildDate;
} orvLibraryVersion;

/* ---- Status text -------------------------------------------------------- */

/* The constant message of a status code; "Unknown Status Code" for codes
 * outside the table. Never null, never to be freed. */
ORV_API const char* orvGetStatusString(orvStatus status);

/* ---- Memory, version and floating-point mode ------------------------------- */
/* Aligned allocation: every block starts at a multiple of 32 bytes.
 * Null for len < 1, for a failed allocation, or for a block that would be
 * larger than 4,294,967,264 bytes. Release with orvsFree (null is accepted). */
ORV_API orv16s* orvsMalloc_16s(int len);
ORV_API orv16sc* orvsMalloc_16sc(int len);
ORV_API orv16u* orvsMalloc_16u(int len);
ORV_API orv32f* orvsMalloc_32f(int len);
ORV_API orv32fc* orvsMalloc_32fc(int len);
ORV_API orv32s* orvsMalloc_32s(int len);
ORV_API orv32sc* orvsMalloc_32sc(int len);
ORV_API orv32u* orvsMalloc_32u(int len);
ORV_API orv64f* orvsMalloc_64f(int len);
ORV_API orv64fc* orvsMalloc_64fc(int len);
ORV_API orv64s* orvsMalloc_64s(int len);
ORV_API orv64sc* orvsMalloc_64sc(int len);
ORV_API orv8s* orvsMalloc_8s(int len);
ORV_API orv8sc* orvsMalloc_8sc(int len);
ORV_API orv8u* orvsMalloc_8u(int len);

ORV_API void orvsFree(void* ptr);

/* The library's constant version record; always the same address. */
ORV_API const orvLibraryVersion* orvsGetLibVersion(void);

/* This build has no flush-to-zero or denormals-are-zero modes: both return
 * orvErrCpuNotSupported at once, read no argument and change nothing. */
ORV_API orvStatus orvsSetDenormAreZeros(int value);
ORV_API orvStatus orvsSetFlushToZero(int value, orv32u* uMask);

/* ---- Add and subtract ------------------------------------------------------ */
ORV_API orvStatus orvsAddC_16s_I(orv16s val, orv16s* srcDst, int len);
ORV_API orvStatus orvsAddC_16s_ISfs(orv16s val, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAddC_16s_Sfs(const orv16s* src, orv16s val, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsAddC_16sc_ISfs(orv16sc val, orv16sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAddC_16sc_Sfs(const orv16sc* src, orv16sc val, orv16sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsAddC_32f(const orv32f* src, orv32f val, orv32f* dst, int len);
ORV_API orvStatus orvsAddC_32f_I(orv32f val, orv32f* srcDst, int len);
ORV_API orvStatus orvsAddC_32fc(const orv32fc* src, orv32fc val, orv32fc* dst, int len);
ORV_API orvStatus orvsAddC_32fc_I(orv32fc val, orv32fc* srcDst, int len);
ORV_API orvStatus orvsAddC_32s_ISfs(orv32s val, orv32s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAddC_32s_Sfs(const orv32s* src, orv32s val, orv32s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsAddC_32sc_ISfs(orv32sc val, orv32sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAddC_32sc_Sfs(const orv32sc* src, orv32sc val, orv32sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsAddC_64f(const orv64f* src, orv64f val, orv64f* dst, int len);
ORV_API orvStatus orvsAddC_64f_I(orv64f val, orv64f* srcDst, int len);
ORV_API orvStatus orvsAddC_64fc(const orv64fc* src, orv64fc val, orv64fc* dst, int len);
ORV_API orvStatus orvsAddC_64fc_I(orv64fc val, orv64fc* srcDst, int len);
ORV_API orvStatus orvsAddC_8u_ISfs(orv8u val, orv8u* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAddC_8u_Sfs(const orv8u* src, orv8u val, orv8u* dst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_16s(const orv16s* src1, const orv16s* src2, orv16s* dst, int len);
ORV_API orvStatus orvsAdd_16s32f(const orv16s* src1, const orv16s* src2, orv32f* dst, int len);
ORV_API orvStatus orvsAdd_16s_I(const orv16s* src, orv16s* srcDst, int len);
ORV_API orvStatus orvsAdd_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_16sc_ISfs(const orv16sc* src, orv16sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_16sc_Sfs(const orv16sc* src1, const orv16sc* src2, orv16sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_16u(const orv16u* src1, const orv16u* src2, orv16u* dst, int len);
ORV_API orvStatus orvsAdd_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len);
ORV_API orvStatus orvsAdd_32f_I(const orv32f* src, orv32f* srcDst, int len);
ORV_API orvStatus orvsAdd_32fc(const orv32fc* src1, const orv32fc* src2, orv32fc* dst, int len);
ORV_API orvStatus orvsAdd_32fc_I(const orv32fc* src, orv32fc* srcDst, int len);
ORV_API orvStatus orvsAdd_32s_ISfs(const orv32s* src, orv32s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_32s_Sfs(const orv32s* src1, const orv32s* src2, orv32s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_32sc_ISfs(const orv32sc* src, orv32sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_32sc_Sfs(const orv32sc* src1, const orv32sc* src2, orv32sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_32u(const orv32u* src1, const orv32u* src2, orv32u* dst, int len);
ORV_API orvStatus orvsAdd_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len);
ORV_API orvStatus orvsAdd_64f_I(const orv64f* src, orv64f* srcDst, int len);
ORV_API orvStatus orvsAdd_64fc(const orv64fc* src1, const orv64fc* src2, orv64fc* dst, int len);
ORV_API orvStatus orvsAdd_64fc_I(const orv64fc* src, orv64fc* srcDst, int len);
ORV_API orvStatus orvsAdd_8u16u(const orv8u* src1, const orv8u* src2, orv16u* dst, int len);
ORV_API orvStatus orvsAdd_8u_ISfs(const orv8u* src, orv8u* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsAdd_8u_Sfs(const orv8u* src1, const orv8u* src2, orv8u* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_16s_ISfs(orv16s val, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_16s_Sfs(const orv16s* src, orv16s val, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_16sc_ISfs(orv16sc val, orv16sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_16sc_Sfs(const orv16sc* src, orv16sc val, orv16sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_32f(const orv32f* src, orv32f val, orv32f* dst, int len);
ORV_API orvStatus orvsSubCRev_32f_I(orv32f val, orv32f* srcDst, int len);
ORV_API orvStatus orvsSubCRev_32fc(const orv32fc* src, orv32fc val, orv32fc* dst, int len);
ORV_API orvStatus orvsSubCRev_32fc_I(orv32fc val, orv32fc* srcDst, int len);
ORV_API orvStatus orvsSubCRev_32s_ISfs(orv32s val, orv32s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_32s_Sfs(const orv32s* src, orv32s val, orv32s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_32sc_ISfs(orv32sc val, orv32sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_32sc_Sfs(const orv32sc* src, orv32sc val, orv32sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_64f(const orv64f* src, orv64f val, orv64f* dst, int len);
ORV_API orvStatus orvsSubCRev_64f_I(orv64f val, orv64f* srcDst, int len);
ORV_API orvStatus orvsSubCRev_64fc(const orv64fc* src, orv64fc val, orv64fc* dst, int len);
ORV_API orvStatus orvsSubCRev_64fc_I(orv64fc val, orv64fc* srcDst, int len);
ORV_API orvStatus orvsSubCRev_8u_ISfs(orv8u val, orv8u* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubCRev_8u_Sfs(const orv8u* src, orv8u val, orv8u* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_16s_I(orv16s val, orv16s* srcDst, int len);
ORV_API orvStatus orvsSubC_16s_ISfs(orv16s val, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_16s_Sfs(const orv16s* src, orv16s val, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_16sc_ISfs(orv16sc val, orv16sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_16sc_Sfs(const orv16sc* src, orv16sc val, orv16sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_32f(const orv32f* src, orv32f val, orv32f* dst, int len);
ORV_API orvStatus orvsSubC_32f_I(orv32f val, orv32f* srcDst, int len);
ORV_API orvStatus orvsSubC_32fc(const orv32fc* src, orv32fc val, orv32fc* dst, int len);
ORV_API orvStatus orvsSubC_32fc_I(orv32fc val, orv32fc* srcDst, int len);
ORV_API orvStatus orvsSubC_32s_ISfs(orv32s val, orv32s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_32s_Sfs(const orv32s* src, orv32s val, orv32s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_32sc_ISfs(orv32sc val, orv32sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_32sc_Sfs(const orv32sc* src, orv32sc val, orv32sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_64f(const orv64f* src, orv64f val, orv64f* dst, int len);
ORV_API orvStatus orvsSubC_64f_I(orv64f val, orv64f* srcDst, int len);
ORV_API orvStatus orvsSubC_64fc(const orv64fc* src, orv64fc val, orv64fc* dst, int len);
ORV_API orvStatus orvsSubC_64fc_I(orv64fc val, orv64fc* srcDst, int len);
ORV_API orvStatus orvsSubC_8u_ISfs(orv8u val, orv8u* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSubC_8u_Sfs(const orv8u* src, orv8u val, orv8u* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_16s(const orv16s* src1, const orv16s* src2, orv16s* dst, int len);
ORV_API orvStatus orvsSub_16s32f(const orv16s* src1, const orv16s* src2, orv32f* dst, int len);
ORV_API orvStatus orvsSub_16s_I(const orv16s* src, orv16s* srcDst, int len);
ORV_API orvStatus orvsSub_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_16sc_ISfs(const orv16sc* src, orv16sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_16sc_Sfs(const orv16sc* src1, const orv16sc* src2, orv16sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len);
ORV_API orvStatus orvsSub_32f_I(const orv32f* src, orv32f* srcDst, int len);
ORV_API orvStatus orvsSub_32fc(const orv32fc* src1, const orv32fc* src2, orv32fc* dst, int len);
ORV_API orvStatus orvsSub_32fc_I(const orv32fc* src, orv32fc* srcDst, int len);
ORV_API orvStatus orvsSub_32s_ISfs(const orv32s* src, orv32s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_32s_Sfs(const orv32s* src1, const orv32s* src2, orv32s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_32sc_ISfs(const orv32sc* src, orv32sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_32sc_Sfs(const orv32sc* src1, const orv32sc* src2, orv32sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len);
ORV_API orvStatus orvsSub_64f_I(const orv64f* src, orv64f* srcDst, int len);
ORV_API orvStatus orvsSub_64fc(const orv64fc* src1, const orv64fc* src2, orv64fc* dst, int len);
ORV_API orvStatus orvsSub_64fc_I(const orv64fc* src, orv64fc* srcDst, int len);
ORV_API orvStatus orvsSub_8u_ISfs(const orv8u* src, orv8u* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsSub_8u_Sfs(const orv8u* src1, const orv8u* src2, orv8u* dst, int len, int scaleFactor);

/* ---- Multiply -------------------------------------------------------------- */
ORV_API orvStatus orvsMulC_16s_I(orv16s val, orv16s* srcDst, int len);
ORV_API orvStatus orvsMulC_16s_ISfs(orv16s val, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMulC_16s_Sfs(const orv16s* src, orv16s val, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMulC_16sc_ISfs(orv16sc val, orv16sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMulC_16sc_Sfs(const orv16sc* src, orv16sc val, orv16sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMulC_32f(const orv32f* src, orv32f val, orv32f* dst, int len);
ORV_API orvStatus orvsMulC_32f_I(orv32f val, orv32f* srcDst, int len);
ORV_API orvStatus orvsMulC_32fc(const orv32fc* src, orv32fc val, orv32fc* dst, int len);
ORV_API orvStatus orvsMulC_32fc_I(orv32fc val, orv32fc* srcDst, int len);
ORV_API orvStatus orvsMulC_32s_ISfs(orv32s val, orv32s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMulC_32s_Sfs(const orv32s* src, orv32s val, orv32s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMulC_32sc_ISfs(orv32sc val, orv32sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMulC_32sc_Sfs(const orv32sc* src, orv32sc val, orv32sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMulC_64f(const orv64f* src, orv64f val, orv64f* dst, int len);
ORV_API orvStatus orvsMulC_64f_I(orv64f val, orv64f* srcDst, int len);
ORV_API orvStatus orvsMulC_64fc(const orv64fc* src, orv64fc val, orv64fc* dst, int len);
ORV_API orvStatus orvsMulC_64fc_I(orv64fc val, orv64fc* srcDst, int len);
ORV_API orvStatus orvsMulC_8u_ISfs(orv8u val, orv8u* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMulC_8u_Sfs(const orv8u* src, orv8u val, orv8u* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_16s(const orv16s* src1, const orv16s* src2, orv16s* dst, int len);
ORV_API orvStatus orvsMul_16s32f(const orv16s* src1, const orv16s* src2, orv32f* dst, int len);
ORV_API orvStatus orvsMul_16s32s_Sfs(const orv16s* src1, const orv16s* src2, orv32s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_16s_I(const orv16s* src, orv16s* srcDst, int len);
ORV_API orvStatus orvsMul_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_16sc_ISfs(const orv16sc* src, orv16sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_16sc_Sfs(const orv16sc* src1, const orv16sc* src2, orv16sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_16u16s_Sfs(const orv16u* src1, const orv16s* src2, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len);
ORV_API orvStatus orvsMul_32f_I(const orv32f* src, orv32f* srcDst, int len);
ORV_API orvStatus orvsMul_32fc(const orv32fc* src1, const orv32fc* src2, orv32fc* dst, int len);
ORV_API orvStatus orvsMul_32fc_I(const orv32fc* src, orv32fc* srcDst, int len);
ORV_API orvStatus orvsMul_32s_ISfs(const orv32s* src, orv32s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_32s_Sfs(const orv32s* src1, const orv32s* src2, orv32s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_32sc_ISfs(const orv32sc* src, orv32sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_32sc_Sfs(const orv32sc* src1, const orv32sc* src2, orv32sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len);
ORV_API orvStatus orvsMul_64f_I(const orv64f* src, orv64f* srcDst, int len);
ORV_API orvStatus orvsMul_64fc(const orv64fc* src1, const orv64fc* src2, orv64fc* dst, int len);
ORV_API orvStatus orvsMul_64fc_I(const orv64fc* src, orv64fc* srcDst, int len);
ORV_API orvStatus orvsMul_8u16u(const orv8u* src1, const orv8u* src2, orv16u* dst, int len);
ORV_API orvStatus orvsMul_8u_ISfs(const orv8u* src, orv8u* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMul_8u_Sfs(const orv8u* src1, const orv8u* src2, orv8u* dst, int len, int scaleFactor);

/* ---- Divide ---------------------------------------------------------------- */
ORV_API orvStatus orvsDivCRev_16u(const orv16u* src, orv16u val, orv16u* dst, int len);
ORV_API orvStatus orvsDivCRev_16u_I(orv16u val, orv16u* srcDst, int len);
ORV_API orvStatus orvsDivC_16s_ISfs(orv16s val, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsDivC_16s_Sfs(const orv16s* src, orv16s val, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsDivC_16sc_ISfs(orv16sc val, orv16sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsDivC_16sc_Sfs(const orv16sc* src, orv16sc val, orv16sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsDivC_32f(const orv32f* src, orv32f val, orv32f* dst, int len);
ORV_API orvStatus orvsDivC_32f_I(orv32f val, orv32f* srcDst, int len);
ORV_API orvStatus orvsDivC_32fc(const orv32fc* src, orv32fc val, orv32fc* dst, int len);
ORV_API orvStatus orvsDivC_32fc_I(orv32fc val, orv32fc* srcDst, int len);
ORV_API orvStatus orvsDivC_64f(const orv64f* src, orv64f val, orv64f* dst, int len);
ORV_API orvStatus orvsDivC_64f_I(orv64f val, orv64f* srcDst, int len);
ORV_API orvStatus orvsDivC_64fc(const orv64fc* src, orv64fc val, orv64fc* dst, int len);
ORV_API orvStatus orvsDivC_64fc_I(orv64fc val, orv64fc* srcDst, int len);
ORV_API orvStatus orvsDivC_8u_ISfs(orv8u val, orv8u* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsDivC_8u_Sfs(const orv8u* src, orv8u val, orv8u* dst, int len, int scaleFactor);
ORV_API orvStatus orvsDiv_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsDiv_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsDiv_16sc_ISfs(const orv16sc* src, orv16sc* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsDiv_16sc_Sfs(const orv16sc* src1, const orv16sc* src2, orv16sc* dst, int len, int scaleFactor);
ORV_API orvStatus orvsDiv_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len);
ORV_API orvStatus orvsDiv_32f_I(const orv32f* src, orv32f* srcDst, int len);
ORV_API orvStatus orvsDiv_32fc(const orv32fc* src1, const orv32fc* src2, orv32fc* dst, int len);
ORV_API orvStatus orvsDiv_32fc_I(const orv32fc* src, orv32fc* srcDst, int len);
ORV_API orvStatus orvsDiv_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len);
ORV_API orvStatus orvsDiv_64f_I(const orv64f* src, orv64f* srcDst, int len);
ORV_API orvStatus orvsDiv_64fc(const orv64fc* src1, const orv64fc* src2, orv64fc* dst, int len);
ORV_API orvStatus orvsDiv_64fc_I(const orv64fc* src, orv64fc* srcDst, int len);
ORV_API orvStatus orvsDiv_8u_ISfs(const orv8u* src, orv8u* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsDiv_8u_Sfs(const orv8u* src1, const orv8u* src2, orv8u* dst, int len, int scaleFactor);

/* ---- Abs, square and roots ------------------------------------------------- */

/* ---- Exponential ----------------------------------------------------------- */

/* ---- Logarithm ------------------------------------------------------------- */

/* ---- Bit logic and shifts -------------------------------------------------- */

/* ---- Set, zero, copy and flip ---------------------------------------------- */
ORV_API orvStatus orvsSet_16s(orv16s val, orv16s* dst, int len);
ORV_API orvStatus orvsSet_16sc(orv16sc val, orv16sc* dst, int len);
ORV_API orvStatus orvsSet_32f(orv32f val, orv32f* dst, int len);
ORV_API orvStatus orvsSet_32fc(orv32fc val, orv32fc* dst, int len);
ORV_API orvStatus orvsSet_32s(orv32s val, orv32s* dst, int len);
ORV_API orvStatus orvsSet_32sc(orv32sc val, orv32sc* dst, int len);
ORV_API orvStatus orvsSet_64f(orv64f val, orv64f* dst, int len);
ORV_API orvStatus orvsSet_64fc(orv64fc val, orv64fc* dst, int len);
ORV_API orvStatus orvsSet_64s(orv64s val, orv64s* dst, int len);
ORV_API orvStatus orvsSet_64sc(orv64sc val, orv64sc* dst, int len);
ORV_API orvStatus orvsSet_8u(orv8u val, orv8u* dst, int len);

ORV_API orvStatus orvsZero_16s(orv16s* dst, int len);
ORV_API orvStatus orvsZero_16sc(orv16sc* dst, int len);
ORV_API orvStatus orvsZero_32f(orv32f* dst, int len);
ORV_API orvStatus orvsZero_32fc(orv32fc* dst, int len);
ORV_API orvStatus orvsZero_64f(orv64f* dst, int len);
ORV_API orvStatus orvsZero_64fc(orv64fc* dst, int len);
ORV_API orvStatus orvsZero_8u(orv8u* dst, int len);

ORV_API orvStatus orvsCopy_16s(const orv16s* src, orv16s* dst, int len);
ORV_API orvStatus orvsCopy_16sc(const orv16sc* src, orv16sc* dst, int len);
ORV_API orvStatus orvsCopy_32f(const orv32f* src, orv32f* dst, int len);
ORV_API orvStatus orvsCopy_32fc(const orv32fc* src, orv32fc* dst, int len);
ORV_API orvStatus orvsCopy_64f(const orv64f* src, orv64f* dst, int len);
ORV_API orvStatus orvsCopy_64fc(const orv64fc* src, orv64fc* dst, int len);
ORV_API orvStatus orvsCopy_8u(const orv8u* src, orv8u* dst, int len);

ORV_API orvStatus orvsFlip_16u(const orv16u* src, orv16u* dst, int len);
ORV_API orvStatus orvsFlip_16u_I(orv16u* srcDst, int len);
ORV_API orvStatus orvsFlip_32f(const orv32f* src, orv32f* dst, int len);
ORV_API orvStatus orvsFlip_32f_I(orv32f* srcDst, int len);
ORV_API orvStatus orvsFlip_64f(const orv64f* src, orv64f* dst, int len);
ORV_API orvStatus orvsFlip_64f_I(orv64f* srcDst, int len);
ORV_API orvStatus orvsFlip_8u(const orv8u* src, orv8u* dst, int len);
ORV_API orvStatus orvsFlip_8u_I(orv8u* srcDst, int len);

/* ---- Type conversion ------------------------------------------------------- */
ORV_API orvStatus orvsConvert_16s32f(const orv16s* src, orv32f* dst, int len);
ORV_API orvStatus orvsConvert_16s32f_Sfs(const orv16s* src, orv32f* dst, int len, int scaleFactor);
ORV_API orvStatus orvsConvert_16s64f_Sfs(const orv16s* src, orv64f* dst, int len, int scaleFactor);
ORV_API orvStatus orvsConvert_16u32f(const orv16u* src, orv32f* dst, int len);
ORV_API orvStatus orvsConvert_32f16s_Sfs(const orv32f* src, orv16s* dst, int len, int rndMode, int scaleFactor);
ORV_API orvStatus orvsConvert_32f16u_Sfs(const orv32f* src, orv16u* dst, int len, int rndMode, int scaleFactor);
ORV_API orvStatus orvsConvert_32f32s_Sfs(const orv32f* src, orv32s* dst, int len, int rndMode, int scaleFactor);
ORV_API orvStatus orvsConvert_32f64f(const orv32f* src, orv64f* dst, int len);
ORV_API orvStatus orvsConvert_32f8s_Sfs(const orv32f* src, orv8s* dst, int len, int rndMode, int scaleFactor);
ORV_API orvStatus orvsConvert_32f8u_Sfs(const orv32f* src, orv8u* dst, int len, int rndMode, int scaleFactor);
ORV_API orvStatus orvsConvert_32s32f(const orv32s* src, orv32f* dst, int len);
ORV_API orvStatus orvsConvert_32s32f_Sfs(const orv32s* src, orv32f* dst, int len, int scaleFactor);
ORV_API orvStatus orvsConvert_32s64f(const orv32s* src, orv64f* dst, int len);
ORV_API orvStatus orvsConvert_32s64f_Sfs(const orv32s* src, orv64f* dst, int len, int scaleFactor);
ORV_API orvStatus orvsConvert_64f32f(const orv64f* src, orv32f* dst, int len);
ORV_API orvStatus orvsConvert_64f32s_Sfs(const orv64f* src, orv32s* dst, int len, int rndMode, int scaleFactor);
ORV_API orvStatus orvsConvert_8s16s(const orv8s* src, orv16s* dst, int len);
ORV_API orvStatus orvsConvert_8s32f(const orv8s* src, orv32f* dst, int len);
ORV_API orvStatus orvsConvert_8u32f(const orv8u* src, orv32f* dst, int len);

/* ---- Complex parts and conjugates ------------------------------------------ */
ORV_API orvStatus orvsConjFlip_16sc(const orv16sc* src, orv16sc* dst, int len);
ORV_API orvStatus orvsConjFlip_32fc(const orv32fc* src, orv32fc* dst, int len);
ORV_API orvStatus orvsConjFlip_64fc(const orv64fc* src, orv64fc* dst, int len);
ORV_API orvStatus orvsConj_16sc(const orv16sc* src, orv16sc* dst, int len);
ORV_API orvStatus orvsConj_16sc_I(orv16sc* srcDst, int len);
ORV_API orvStatus orvsConj_32fc(const orv32fc* src, orv32fc* dst, int len);
ORV_API orvStatus orvsConj_32fc_I(orv32fc* srcDst, int len);
ORV_API orvStatus orvsConj_64fc(const orv64fc* src, orv64fc* dst, int len);
ORV_API orvStatus orvsConj_64fc_I(orv64fc* srcDst, int len);
ORV_API orvStatus orvsCplxToReal_16sc(const orv16sc* src, orv16s* dstRe, orv16s* dstIm, int len);
ORV_API orvStatus orvsCplxToReal_32fc(const orv32fc* src, orv32f* dstRe, orv32f* dstIm, int len);
ORV_API orvStatus orvsCplxToReal_64fc(const orv64fc* src, orv64f* dstRe, orv64f* dstIm, int len);
ORV_API orvStatus orvsImag_16sc(const orv16sc* src, orv16s* dstIm, int len);
ORV_API orvStatus orvsImag_32fc(const orv32fc* src, orv32f* dstIm, int len);
ORV_API orvStatus orvsImag_64fc(const orv64fc* src, orv64f* dstIm, int len);
ORV_API orvStatus orvsRealToCplx_16s(const orv16s* srcRe, const orv16s* srcIm, orv16sc* dst, int len);
ORV_API orvStatus orvsRealToCplx_32f(const orv32f* srcRe, const orv32f* srcIm, orv32fc* dst, int len);
ORV_API orvStatus orvsRealToCplx_64f(const orv64f* srcRe, const orv64f* srcIm, orv64fc* dst, int len);
ORV_API orvStatus orvsReal_16sc(const orv16sc* src, orv16s* dstRe, int len);
ORV_API orvStatus orvsReal_32fc(const orv32fc* src, orv32f* dstRe, int len);
ORV_API orvStatus orvsReal_64fc(const orv64fc* src, orv64f* dstRe, int len);

/* ---- Thresholds ------------------------------------------------------------ */

/* ---- Polar forms and power spectrum ---------------------------------------- */

/* ---- Sum, mean and standard deviation -------------------------------------- */

/* ---- Extremes and bit order ------------------------------------------------ */

/* ---- Norms ----------------------------------------------------------------- */

/* ---- Dot products ---------------------------------------------------------- */

/* ---- Complex FFT ----------------------------------------------------------- */

ORV_API orvStatus orvsFFTInitAlloc_C_32fc(orvsFFTContext** context, int order, int flag, int hint);
ORV_API orvStatus orvsFFTInitAlloc_C_32f(orvsFFTContext** context, int order, int flag, int hint);
ORV_API orvStatus orvsFFTInitAlloc_C_64fc(orvsFFTContext** context, int order, int flag, int hint);
ORV_API orvStatus orvsFFTInitAlloc_C_64f(orvsFFTContext** context, int order, int flag, int hint);
ORV_API orvStatus orvsFFTFree_C_32fc(orvsFFTContext* context);
ORV_API orvStatus orvsFFTFree_C_32f(orvsFFTContext* context);
ORV_API orvStatus orvsFFTFree_C_64fc(orvsFFTContext* context);
ORV_API orvStatus orvsFFTFree_C_64f(orvsFFTContext* context);
ORV_API orvStatus orvsFFTGetBufSize_C_32fc(const orvsFFTContext* context, int* size);
ORV_API orvStatus orvsFFTGetBufSize_C_32f(const orvsFFTContext* context, int* size);
ORV_API orvStatus orvsFFTGetBufSize_C_64fc(const orvsFFTContext* context, int* size);
ORV_API orvStatus orvsFFTGetBufSize_C_64f(const orvsFFTContext* context, int* size);
ORV_API orvStatus orvsFFTFwd_CToC_32fc(const orv32fc* src, orv32fc* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTFwd_CToC_32f(const orv32f* srcRe, const orv32f* srcIm, orv32f* dstRe, orv32f* dstIm, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTFwd_CToC_64fc(const orv64fc* src, orv64fc* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTFwd_CToC_64f(const orv64f* srcRe, const orv64f* srcIm, orv64f* dstRe, orv64f* dstIm, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTInv_CToC_32fc(const orv32fc* src, orv32fc* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTInv_CToC_32f(const orv32f* srcRe, const orv32f* srcIm, orv32f* dstRe, orv32f* dstIm, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTInv_CToC_64fc(const orv64fc* src, orv64fc* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTInv_CToC_64f(const orv64f* srcRe, const orv64f* srcIm, orv64f* dstRe, orv64f* dstIm, const orvsFFTContext* context, orv8u* workBuffer);

/* ---- Real FFT -------------------------------------------------------------- */
ORV_API orvStatus orvsFFTFree_R_32f(orvsFFTContext* context);
ORV_API orvStatus orvsFFTFree_R_64f(orvsFFTContext* context);
ORV_API orvStatus orvsFFTFwd_RToCCS_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTFwd_RToCCS_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTFwd_RToPack_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTFwd_RToPack_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTFwd_RToPerm_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTFwd_RToPerm_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTGetBufSize_R_32f(const orvsFFTContext* context, int* size);
ORV_API orvStatus orvsFFTGetBufSize_R_64f(const orvsFFTContext* context, int* size);
ORV_API orvStatus orvsFFTInitAlloc_R_32f(orvsFFTContext** context, int order, int flag, int hint);
ORV_API orvStatus orvsFFTInitAlloc_R_64f(orvsFFTContext** context, int order, int flag, int hint);
ORV_API orvStatus orvsFFTInv_CCSToR_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTInv_CCSToR_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTInv_PackToR_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTInv_PackToR_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTInv_PermToR_32f(const orv32f* src, orv32f* dst, const orvsFFTContext* context, orv8u* workBuffer);
ORV_API orvStatus orvsFFTInv_PermToR_64f(const orv64f* src, orv64f* dst, const orvsFFTContext* context, orv8u* workBuffer);

/* ---- 16-bit FFT ------------------------------------------------------------ */

/* ---- DFT ------------------------------------------------------------------- */

/* ---- DCT ------------------------------------------------------------------- */

/* ---- Packed-spectrum arithmetic -------------------------------------------- */
ORV_API orvStatus orvsConjCcs_16sc(const orv16sc* src, orv16sc* dst, int len);
ORV_API orvStatus orvsConjCcs_16sc_I(orv16sc* srcDst, int len);
ORV_API orvStatus orvsConjCcs_32fc(const orv32fc* src, orv32fc* dst, int len);
ORV_API orvStatus orvsConjCcs_32fc_I(orv32fc* srcDst, int len);
ORV_API orvStatus orvsConjCcs_64fc(const orv64fc* src, orv64fc* dst, int len);
ORV_API orvStatus orvsConjCcs_64fc_I(orv64fc* srcDst, int len);
ORV_API orvStatus orvsConjPack_16sc(const orv16s* src, orv16sc* dst, int len);
ORV_API orvStatus orvsConjPack_16sc_I(orv16sc* srcDst, int len);
ORV_API orvStatus orvsConjPack_32fc(const orv32f* src, orv32fc* dst, int len);
ORV_API orvStatus orvsConjPack_32fc_I(orv32fc* srcDst, int len);
ORV_API orvStatus orvsConjPack_64fc(const orv64f* src, orv64fc* dst, int len);
ORV_API orvStatus orvsConjPack_64fc_I(orv64fc* srcDst, int len);
ORV_API orvStatus orvsConjPerm_16sc(const orv16s* src, orv16sc* dst, int len);
ORV_API orvStatus orvsConjPerm_16sc_I(orv16sc* srcDst, int len);
ORV_API orvStatus orvsConjPerm_32fc(const orv32f* src, orv32fc* dst, int len);
ORV_API orvStatus orvsConjPerm_32fc_I(orv32fc* srcDst, int len);
ORV_API orvStatus orvsConjPerm_64fc(const orv64f* src, orv64fc* dst, int len);
ORV_API orvStatus orvsConjPerm_64fc_I(orv64fc* srcDst, int len);
ORV_API orvStatus orvsMulPackConj_32f_I(const orv32f* src, orv32f* srcDst, int len);
ORV_API orvStatus orvsMulPackConj_64f_I(const orv64f* src, orv64f* srcDst, int len);
ORV_API orvStatus orvsMulPack_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMulPack_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMulPack_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len);
ORV_API orvStatus orvsMulPack_32f_I(const orv32f* src, orv32f* srcDst, int len);
ORV_API orvStatus orvsMulPack_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len);
ORV_API orvStatus orvsMulPack_64f_I(const orv64f* src, orv64f* srcDst, int len);
ORV_API orvStatus orvsMulPerm_16s_ISfs(const orv16s* src, orv16s* srcDst, int len, int scaleFactor);
ORV_API orvStatus orvsMulPerm_16s_Sfs(const orv16s* src1, const orv16s* src2, orv16s* dst, int len, int scaleFactor);
ORV_API orvStatus orvsMulPerm_32f(const orv32f* src1, const orv32f* src2, orv32f* dst, int len);
ORV_API orvStatus orvsMulPerm_32f_I(const orv32f* src, orv32f* srcDst, int len);
ORV_API orvStatus orvsMulPerm_64f(const orv64f* src1, const orv64f* src2, orv64f* dst, int len);
ORV_API orvStatus orvsMulPerm_64f_I(const orv64f* src, orv64f* srcDst, int len);

/* ---- Goertzel -------------------------------------------------------------- */

/* ---- Wavelet transforms ---------------------------------------------------- */

/* ---- Haar transforms ------------------------------------------------------- */

/* ---- FIR state ------------------------------------------------------------- */
/* Taps, delay line and, for long filters, the spectrum of the taps of one
 * FIR filter. Get, Set and Free accept single-rate and multi-rate states of
 * their family and refuse any other state with orvErrContextMismatch. */
ORV_API orvStatus orvsFIRFree32f_16s(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree32fc_16sc(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree32s_16s(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree32sc_16sc(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree64f_16s(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree64f_32f(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree64f_32s(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree64fc_16sc(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree64fc_32fc(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree64fc_32sc(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree_32f(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree_32fc(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree_64f(orvsFIRState* state);
ORV_API orvStatus orvsFIRFree_64fc(orvsFIRState* state);
ORV_API orvStatus orvsFIRGetDlyLine32f_16s(const orvsFIRState* state, orv16s* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine32fc_16sc(const orvsFIRState* state, orv16sc* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine32s_16s(const orvsFIRState* state, orv16s* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine32sc_16sc(const orvsFIRState* state, orv16sc* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine64f_16s(const orvsFIRState* state, orv16s* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine64f_32f(const orvsFIRState* state, orv32f* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine64f_32s(const orvsFIRState* state, orv32s* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine64fc_16sc(const orvsFIRState* state, orv16sc* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine64fc_32fc(const orvsFIRState* state, orv32fc* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine64fc_32sc(const orvsFIRState* state, orv32sc* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine_32f(const orvsFIRState* state, orv32f* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine_32fc(const orvsFIRState* state, orv32fc* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine_64f(const orvsFIRState* state, orv64f* dlyLine);
ORV_API orvStatus orvsFIRGetDlyLine_64fc(const orvsFIRState* state, orv64fc* dlyLine);
ORV_API orvStatus orvsFIRGetTaps32f_16s(const orvsFIRState* state, orv32f* taps);
ORV_API orvStatus orvsFIRGetTaps32fc_16sc(const orvsFIRState* state, orv32fc* taps);
ORV_API orvStatus orvsFIRGetTaps32s_16s(const orvsFIRState* state, orv32s* taps, int* tapsFactor);
ORV_API orvStatus orvsFIRGetTaps32s_16s32f(const orvsFIRState* state, orv32f* taps);
ORV_API orvStatus orvsFIRGetTaps32sc_16sc(const orvsFIRState* state, orv32sc* taps, int* tapsFactor);
ORV_API orvStatus orvsFIRGetTaps32sc_16sc32fc(const orvsFIRState* state, orv32fc* taps);
ORV_API orvStatus orvsFIRGetTaps64f_16s(const orvsFIRState* state, orv64f* taps);
ORV_API orvStatus orvsFIRGetTaps64f_32f(const orvsFIRState* state, orv64f* taps);
ORV_API orvStatus orvsFIRGetTaps64f_32s(const orvsFIRState* state, orv64f* taps);
ORV_API orvStatus orvsFIRGetTaps64fc_16sc(const orvsFIRState* state, orv64fc* taps);
ORV_API orvStatus orvsFIRGetTaps64fc_32fc(const orvsFIRState* state, orv64fc* taps);
ORV_API orvStatus orvsFIRGetTaps64fc_32sc(const orvsFIRState* state, orv64fc* taps);
ORV_API orvStatus orvsFIRGetTaps_32f(const orvsFIRState* state, orv32f* taps);
ORV_API orvStatus orvsFIRGetTaps_32fc(const orvsFIRState* state, orv32fc* taps);
ORV_API orvStatus orvsFIRGetTaps_64f(const orvsFIRState* state, orv64f* taps);
ORV_API orvStatus orvsFIRGetTaps_64fc(const orvsFIRState* state, orv64fc* taps);
ORV_API orvStatus orvsFIRInitAlloc32f_16s(orvsFIRState** state, const orv32f* taps, int tapsLen, const orv16s* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc32fc_16sc(orvsFIRState** state, const orv32fc* taps, int tapsLen, const orv16sc* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc32s_16s(orvsFIRState** state, const orv32s* taps, int tapsLen, int tapsFactor, const orv16s* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc32s_16s32f(orvsFIRState** state, const orv32f* taps, int tapsLen, const orv16s* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc32sc_16sc(orvsFIRState** state, const orv32sc* taps, int tapsLen, int tapsFactor, const orv16sc* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc32sc_16sc32fc(orvsFIRState** state, const orv32fc* taps, int tapsLen, const orv16sc* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc64f_16s(orvsFIRState** state, const orv64f* taps, int tapsLen, const orv16s* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc64f_32f(orvsFIRState** state, const orv64f* taps, int tapsLen, const orv32f* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc64f_32s(orvsFIRState** state, const orv64f* taps, int tapsLen, const orv32s* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc64fc_16sc(orvsFIRState** state, const orv64fc* taps, int tapsLen, const orv16sc* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc64fc_32fc(orvsFIRState** state, const orv64fc* taps, int tapsLen, const orv32fc* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc64fc_32sc(orvsFIRState** state, const orv64fc* taps, int tapsLen, const orv32sc* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc_32f(orvsFIRState** state, const orv32f* taps, int tapsLen, const orv32f* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc_32fc(orvsFIRState** state, const orv32fc* taps, int tapsLen, const orv32fc* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc_64f(orvsFIRState** state, const orv64f* taps, int tapsLen, const orv64f* dlyLine);
ORV_API orvStatus orvsFIRInitAlloc_64fc(orvsFIRState** state, const orv64fc* taps, int tapsLen, const orv64fc* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine32f_16s(orvsFIRState* state, const orv16s* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine32fc_16sc(orvsFIRState* state, const orv16sc* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine32s_16s(orvsFIRState* state, const orv16s* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine32sc_16sc(orvsFIRState* state, const orv16sc* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine64f_16s(orvsFIRState* state, const orv16s* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine64f_32f(orvsFIRState* state, const orv32f* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine64f_32s(orvsFIRState* state, const orv32s* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine64fc_16sc(orvsFIRState* state, const orv16sc* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine64fc_32fc(orvsFIRState* state, const orv32fc* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine64fc_32sc(orvsFIRState* state, const orv32sc* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine_32f(orvsFIRState* state, const orv32f* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine_32fc(orvsFIRState* state, const orv32fc* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine_64f(orvsFIRState* state, const orv64f* dlyLine);
ORV_API orvStatus orvsFIRSetDlyLine_64fc(orvsFIRState* state, const orv64fc* dlyLine);

/* ---- Single-rate FIR ------------------------------------------------------- */
/* Block forms orvsFIR* on a state (a multi-rate state is handed to the
 * multi-rate kernels), single samples orvsFIROne* (single-rate state only),
 * and the stateless _Direct_ forms, whose caller keeps 2 * tapsLen delay
 * samples and a running index. */
ORV_API orvStatus orvsFIR32f_16s_ISfs(orv16s* srcDst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR32f_16s_Sfs(const orv16s* src, orv16s* dst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR32f_Direct_16s_ISfs(orv16s* srcDst, int len, const orv32f* taps, int tapsLen, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR32f_Direct_16s_Sfs(const orv16s* src, orv16s* dst, int len, const orv32f* taps, int tapsLen, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR32fc_16sc_ISfs(orv16sc* srcDst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR32fc_16sc_Sfs(const orv16sc* src, orv16sc* dst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR32fc_Direct_16sc_ISfs(orv16sc* srcDst, int len, const orv32fc* taps, int tapsLen, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR32fc_Direct_16sc_Sfs(const orv16sc* src, orv16sc* dst, int len, const orv32fc* taps, int tapsLen, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR32s_16s_ISfs(orv16s* srcDst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR32s_16s_Sfs(const orv16s* src, orv16s* dst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR32s_Direct_16s_ISfs(orv16s* srcDst, int len, const orv32s* taps, int tapsLen, int tapsFactor, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR32s_Direct_16s_Sfs(const orv16s* src, orv16s* dst, int len, const orv32s* taps, int tapsLen, int tapsFactor, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR32sc_16sc_ISfs(orv16sc* srcDst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR32sc_16sc_Sfs(const orv16sc* src, orv16sc* dst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR32sc_Direct_16sc_ISfs(orv16sc* srcDst, int len, const orv32sc* taps, int tapsLen, int tapsFactor, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR32sc_Direct_16sc_Sfs(const orv16sc* src, orv16sc* dst, int len, const orv32sc* taps, int tapsLen, int tapsFactor, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR64f_16s_ISfs(orv16s* srcDst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR64f_16s_Sfs(const orv16s* src, orv16s* dst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR64f_32f(const orv32f* src, orv32f* dst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR64f_32f_I(orv32f* srcDst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR64f_32s_ISfs(orv32s* srcDst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR64f_32s_Sfs(const orv32s* src, orv32s* dst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR64f_Direct_16s_ISfs(orv16s* srcDst, int len, const orv64f* taps, int tapsLen, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR64f_Direct_16s_Sfs(const orv16s* src, orv16s* dst, int len, const orv64f* taps, int tapsLen, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR64f_Direct_32f(const orv32f* src, orv32f* dst, int len, const orv64f* taps, int tapsLen, orv32f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR64f_Direct_32f_I(orv32f* srcDst, int len, const orv64f* taps, int tapsLen, orv32f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR64f_Direct_32s_ISfs(orv32s* srcDst, int len, const orv64f* taps, int tapsLen, orv32s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR64f_Direct_32s_Sfs(const orv32s* src, orv32s* dst, int len, const orv64f* taps, int tapsLen, orv32s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR64fc_16sc_ISfs(orv16sc* srcDst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR64fc_16sc_Sfs(const orv16sc* src, orv16sc* dst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR64fc_32fc(const orv32fc* src, orv32fc* dst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR64fc_32fc_I(orv32fc* srcDst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR64fc_32sc_ISfs(orv32sc* srcDst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR64fc_32sc_Sfs(const orv32sc* src, orv32sc* dst, int len, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIR64fc_Direct_16sc_ISfs(orv16sc* srcDst, int len, const orv64fc* taps, int tapsLen, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR64fc_Direct_16sc_Sfs(const orv16sc* src, orv16sc* dst, int len, const orv64fc* taps, int tapsLen, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR64fc_Direct_32fc(const orv32fc* src, orv32fc* dst, int len, const orv64fc* taps, int tapsLen, orv32fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR64fc_Direct_32fc_I(orv32fc* srcDst, int len, const orv64fc* taps, int tapsLen, orv32fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR64fc_Direct_32sc_ISfs(orv32sc* srcDst, int len, const orv64fc* taps, int tapsLen, orv32sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIR64fc_Direct_32sc_Sfs(const orv32sc* src, orv32sc* dst, int len, const orv64fc* taps, int tapsLen, orv32sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne32f_16s_Sfs(orv16s src, orv16s* dst, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIROne32f_Direct_16s_ISfs(orv16s* srcDst, const orv32f* taps, int tapsLen, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne32f_Direct_16s_Sfs(orv16s src, orv16s* dst, const orv32f* taps, int tapsLen, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne32fc_16sc_Sfs(orv16sc src, orv16sc* dst, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIROne32fc_Direct_16sc_ISfs(orv16sc* srcDst, const orv32fc* taps, int tapsLen, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne32fc_Direct_16sc_Sfs(orv16sc src, orv16sc* dst, const orv32fc* taps, int tapsLen, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne32s_16s_Sfs(orv16s src, orv16s* dst, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIROne32s_Direct_16s_ISfs(orv16s* srcDst, const orv32s* taps, int tapsLen, int tapsFactor, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne32s_Direct_16s_Sfs(orv16s src, orv16s* dst, const orv32s* taps, int tapsLen, int tapsFactor, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne32sc_16sc_Sfs(orv16sc src, orv16sc* dst, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIROne32sc_Direct_16sc_ISfs(orv16sc* srcDst, const orv32sc* taps, int tapsLen, int tapsFactor, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne32sc_Direct_16sc_Sfs(orv16sc src, orv16sc* dst, const orv32sc* taps, int tapsLen, int tapsFactor, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne64f_16s_Sfs(orv16s src, orv16s* dst, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIROne64f_32f(orv32f src, orv32f* dst, orvsFIRState* state);
ORV_API orvStatus orvsFIROne64f_32s_Sfs(orv32s src, orv32s* dst, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIROne64f_Direct_16s_ISfs(orv16s* srcDst, const orv64f* taps, int tapsLen, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne64f_Direct_16s_Sfs(orv16s src, orv16s* dst, const orv64f* taps, int tapsLen, orv16s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne64f_Direct_32f(orv32f src, orv32f* dst, const orv64f* taps, int tapsLen, orv32f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne64f_Direct_32f_I(orv32f* srcDst, const orv64f* taps, int tapsLen, orv32f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne64f_Direct_32s_ISfs(orv32s* srcDst, const orv64f* taps, int tapsLen, orv32s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne64f_Direct_32s_Sfs(orv32s src, orv32s* dst, const orv64f* taps, int tapsLen, orv32s* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne64fc_16sc_Sfs(orv16sc src, orv16sc* dst, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIROne64fc_32fc(orv32fc src, orv32fc* dst, orvsFIRState* state);
ORV_API orvStatus orvsFIROne64fc_32sc_Sfs(orv32sc src, orv32sc* dst, orvsFIRState* state, int scaleFactor);
ORV_API orvStatus orvsFIROne64fc_Direct_16sc_ISfs(orv16sc* srcDst, const orv64fc* taps, int tapsLen, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne64fc_Direct_16sc_Sfs(orv16sc src, orv16sc* dst, const orv64fc* taps, int tapsLen, orv16sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne64fc_Direct_32fc(orv32fc src, orv32fc* dst, const orv64fc* taps, int tapsLen, orv32fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne64fc_Direct_32fc_I(orv32fc* srcDst, const orv64fc* taps, int tapsLen, orv32fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne64fc_Direct_32sc_ISfs(orv32sc* srcDst, const orv64fc* taps, int tapsLen, orv32sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne64fc_Direct_32sc_Sfs(orv32sc src, orv32sc* dst, const orv64fc* taps, int tapsLen, orv32sc* dlyLine, int* dlyLineIndex, int scaleFactor);
ORV_API orvStatus orvsFIROne_32f(orv32f src, orv32f* dst, orvsFIRState* state);
ORV_API orvStatus orvsFIROne_32fc(orv32fc src, orv32fc* dst, orvsFIRState* state);
ORV_API orvStatus orvsFIROne_64f(orv64f src, orv64f* dst, orvsFIRState* state);
ORV_API orvStatus orvsFIROne_64fc(orv64fc src, orv64fc* dst, orvsFIRState* state);
ORV_API orvStatus orvsFIROne_Direct_32f(orv32f src, orv32f* dst, const orv32f* taps, int tapsLen, orv32f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne_Direct_32f_I(orv32f* srcDst, const orv32f* taps, int tapsLen, orv32f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne_Direct_32fc(orv32fc src, orv32fc* dst, const orv32fc* taps, int tapsLen, orv32fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne_Direct_32fc_I(orv32fc* srcDst, const orv32fc* taps, int tapsLen, orv32fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne_Direct_64f(orv64f src, orv64f* dst, const orv64f* taps, int tapsLen, orv64f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne_Direct_64f_I(orv64f* srcDst, const orv64f* taps, int tapsLen, orv64f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne_Direct_64fc(orv64fc src, orv64fc* dst, const orv64fc* taps, int tapsLen, orv64fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIROne_Direct_64fc_I(orv64fc* srcDst, const orv64fc* taps, int tapsLen, orv64fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR_32f(const orv32f* src, orv32f* dst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR_32f_I(orv32f* srcDst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR_32fc(const orv32fc* src, orv32fc* dst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR_32fc_I(orv32fc* srcDst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR_64f(const orv64f* src, orv64f* dst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR_64f_I(orv64f* srcDst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR_64fc(const orv64fc* src, orv64fc* dst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR_64fc_I(orv64fc* srcDst, int len, orvsFIRState* state);
ORV_API orvStatus orvsFIR_Direct_32f(const orv32f* src, orv32f* dst, int len, const orv32f* taps, int tapsLen, orv32f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR_Direct_32f_I(orv32f* srcDst, int len, const orv32f* taps, int tapsLen, orv32f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR_Direct_32fc(const orv32fc* src, orv32fc* dst, int len, const orv32fc* taps, int tapsLen, orv32fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR_Direct_32fc_I(orv32fc* srcDst, int len, const orv32fc* taps, int tapsLen, orv32fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR_Direct_64f(const orv64f* src, orv64f* dst, int len, const orv64f* taps, int tapsLen, orv64f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR_Direct_64f_I(orv64f* srcDst, int len, const orv64f* taps, int tapsLen, orv64f* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR_Direct_64fc(const orv64fc* src, orv64fc* dst, int len, const orv64fc* taps, int tapsLen, orv64fc* dlyLine, int* dlyLineIndex);
ORV_API orvStatus orvsFIR_Direct_64fc_I(orv64fc* srcDst, int len, const orv64fc* taps, int tapsLen, orv64fc* dlyLine, int* dlyLineIndex);

/* ---- Multi-rate FIR -------------------------------------------------------- */

/* ---- Adaptive FIR ---------------------------------------------------------- */

/* ---- IIR state ------------------------------------------------------------- */

/* ---- IIR kernels ----------------------------------------------------------- */

/* ---- Convolution ----------------------------------------------------------- */

/* ---- Correlation ----------------------------------------------------------- */

/* ---- Up-sampling, down-sampling and pre-emphasis --------------------------- */

/* ---- Tone and triangle generators ------------------------------------------ */

/* ---- Random generators ----------------------------------------------------- */

/* ---- Window functions ------------------------------------------------------ */

/* ---- A-law and mu-law companding ------------------------------------------- */

/* ---- Arctangent ------------------------------------------------------------ */

/* ---- Normalisation --------------------------------------------------------- */

/* ---- Median filter --------------------------------------------------------- */

/* ---- Ramp and Jaehne vectors ----------------------------------------------- */

/* ---- IIR kernels with integer taps ----------------------------------------- */

#ifdef __cplusplus
}
#endif

#endif /* ORVSPX_H */
