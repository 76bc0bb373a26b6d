// Status texts: every code of the table, and the codes outside it.
#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <set>

#include "orvspx.h"

namespace {

struct StatusText {
  int code;
  const char* text;
};

// The table as documented, irregular texts and all.
const StatusText kTable[] = {
    {-9999, "The requested mode is currently not supported"},
    {-9998, "The target cpu is not supported"},
    {-83, "Prediction Mode value error"},
    {-82, "The step value is less than 8"},
    {-81, "The step value is less than 16"},
    {-80, "The frame width is less then 8"},
    {-79, "The frame height is less or equal to zero"},
    {-78, "The expand pixels number is less then 8"},
    {-77, "The plane step is less then plane width"},
    {-76, "The quantizer value is less or qual to zero or more then 31"},
    {-75, "Illegal Huffman code while MV stream processing"},
    {-74, "Illegal Huffman code while VLC stream processing"},
    {-73, "Illegal code while DC stream processing"},
    {-72, "The zigzag compact length is more then 64"},
    {-71, "Incorrect value of the filter bank frequency parameter"},
    {-70, "Incorrect value of the filter bank parameter"},
    {-69, "Filter bank is not correctly initialized"},
    {-67, "Negative occupation count"},
    {-66, "Incorrect value of the codebook flag parameter"},
    {-65, "No sonvergence of SVD algorithm"},
    {-64, "JPEG Huffman table destroyed"},
    {-63, "JPEG DCT coefficient out of range"},
    {-62, "JPEG marker was met in the bitstream"},
    {-61, "System error in the draw text operation"},
    {-60, "Wrong order of the destination channels"},
    {-59, "All values of the mask are zero"},
    {-58, "The quadrangle degenerates into triangle, line or point"},
    {-57, "Size of the rectangle region is less or equal to the one"},
    {-56, "Unallowable values of the transformation coefficients"},
    {-55, "Bad value of noise amplitude for dithering"},
    {-54, "Number of dithering levels is out of range"},
    {-53, "Bad or unsupported number of channels"},
    {-52, "COI is out of range"},
    {-51, "Divisor is equal zero, function is aborted"},
    {-50, "Illegal type of image compositing operation"},
    {-49, "Gamma range bounds is less or equal zero"},
    {-48, "Sum of the ToGray converion coefficients must be less or equal to 1"},
    {-47, "Illegal channel number"},
    {-46, "The magnitude of the Tone is less or equal to zero"},
    {-45, "The frequency of the Tone is less 0 or greater or equal 0.5"},
    {-44, "The phase of the Tone is less 0 or greater or equal 2*PI"},
    {-43, "The magnitude of the Triangle is less or equal to zero"},
    {-42, "The frequency of the Triangle is less 0 or greater or equal 0.5"},
    {-41, "The phase of the Triangle is less 0 or greater or equal 2*PI"},
    {-40, "The asymmetry of the Triangle is less -PI or greater or equal PI"},
    {-39, "Kaiser window is too huge"},
    {-38, "Magnitude value is negative"},
    {-37, "The stride value is less than the row length"},
    {-36, "Negative epsilon value error"},
    {-35, "Invalid offset value of wavelet filter"},
    {-34, "The anchor point is outside mask"},
    {-33, "Invalid mask size"},
    {-32, "Value of shift is less than zero"},
    {-31, "Sampling factor is less or equal zero"},
    {-30, "Phase value is out of range: 0 <= phase < factor"},
    {-29, "Wrong value of the MR FIR sampling factor parameter"},
    {-28, "Wrong value of the MR FIR sampling phase parameter"},
    {-27, "Relative frequency value is out of range"},
    {-26, "The number iterations of FIR is less or equal zero"},
    {-25, "The order of IIR is less or equal zero"},
    {-24, "Invalid value of the delay line sample index"},
    {-23, "Resize factor(s) less or equal to zero"},
    {-22, "Invalid interpolation mode"},
    {-21, "Invalid flip mode"},
    {-20, "Moment value M(0,0) is too small to continue calculation"},
    {-19, "Negative value of the level in the threshold operation"},
    {-18, "Invalid treshold bounds"},
    {-17, "The context parameter doesn't match to the operation"},
    {-16, "Invalid value of the FFT flag parameter"},
    {-15, "Invalid value of the FFT order parameter"},
    {-14, "Step value is less or equal zero"},
    {-13, "Scale bounds is out of range"},
    {-12, "Bad or unsupported data type"},
    {-11, "Argument is out of range or point is outside the image"},
    {-10, "An attempt to divide by zero"},
    {-9, "Not enough memory for the operation"},
    {-8, "Null pointer error"},
    {-7, "Bad values of bounds: the low bound is greater than a high bound"},
    {-6, "Wrong value of data size"},
    {-5, "Function arg/param is bad"},
    {-4, "Not enough memory for the operation"},
    {-2, "Unknown/unspecified error"},
    {0, "No error, it's ok"},
    {1, "No operation has been executed"},
    {2, "Misaligned pointer in operation in which must be aligned"},
    {3, "Negative value(s) of argument in the function Sqrt"},
    {4, "INF result. Zero value was met by InvThresh with zero level"},
    {5, "Even size of Median Filter mask was replaced by odd one"},
    {6, "Zero value(s) of divisor in the function Div"},
    {7, "Zero value(s) of argument in the Ln function"},
    {8, "Negative value(s) of argument in the Ln function"},
    {9, "Not a Number argument value warning"},
    {10, "JPEG marker was met in the bitstream"},
    {11, "All result values are floored"},
    {12, "An overflow occurred in the operation"},
    {13, "Quantized LP syntethis filter stability check is applied at the low boundary of [0,pi]"},
    {14, "Quantized LP syntethis filter stability check is applied at the high boundary of [0,pi]"},
    {15, "Quantized LP syntethis filter stability check is applied at both boundaries of [0,pi]"},
    {16, "Zero occupation count"},
};

TEST(StatusString, EveryCodeOfTheTableHasItsText) {
  for (const StatusText& row : kTable) {
    EXPECT_STREQ(orvGetStatusString(row.code), row.text) << "code " << row.code;
  }
}

TEST(StatusString, CodesOutsideTheTableAreUnknown) {
  std::set<int> known;
  for (const StatusText& row : kTable) known.insert(row.code);
  for (int code = -10050; code <= 50; ++code) {
    if (known.count(code) == 0) {
      EXPECT_STREQ(orvGetStatusString(code), "Unknown Status Code") << "code " << code;
    }
  }
  for (int code : {INT_MIN, INT_MAX, -10051, 51}) {
    EXPECT_STREQ(orvGetStatusString(code), "Unknown Status Code") << "code " << code;
  }
}

TEST(StatusString, NamedConstantsCarryTheirCodes) {
  EXPECT_EQ(orvOk, 0);
  EXPECT_EQ(orvErrNullPointer, -8);
  EXPECT_EQ(orvErrSize, -6);
  EXPECT_EQ(orvErrCpuNotSupported, -9998);
  EXPECT_EQ(orvWarnZeroOccupation, 16);
  EXPECT_STREQ(orvGetStatusString(orvErrMemoryAlloc), orvGetStatusString(orvErrNoMemory));
  EXPECT_STREQ(orvGetStatusString(orvWarnJpegMarker), orvGetStatusString(orvErrJpegMarker));
  EXPECT_EQ(orvScaleNone, 8);
  EXPECT_EQ(orvScaleBothSqrt, 4);
  EXPECT_EQ(orvScaleForward, 1);
  EXPECT_EQ(orvScaleInverse, 2);
  EXPECT_EQ(orvRndNear, 1);
  EXPECT_EQ(orvRndZero, 0);
  EXPECT_EQ(orvCmpGreater, 4);
  EXPECT_EQ(orvCmpLess, 0);
}

}  // namespace
